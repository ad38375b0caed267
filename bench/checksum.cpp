#include "files/checksum.h"

#include "files/file_checksum.h"

#include "bench/page.h"

namespace bench {

namespace {

std::string randomBytes(size_t size) {
    std::string bytes(size, '\0');
    uint32_t state = 2001;
    for (char& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

// The recurrence as it is defined, over the file read once, piece by piece.
int32_t plainChecksum(const std::wstring& path) {
    static unsigned char buffer[1 << 16];
    const win32::OwnedFile file(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    uint32_t h = 0;
    for (DWORD got = 0; ::ReadFile(file.get(), buffer, sizeof buffer, &got, nullptr) && got;) {
        for (DWORD i = 0; i < got; ++i) {
            const uint32_t next = h / 2 + h % 2 * 0x40000000 + buffer[i];
            if (next <= 0x7FFFFFFF) h = next;
        }
    }
    return static_cast<int32_t>(h);
}

}  // namespace

void checksum(const Options& options, Report& report) {
    const TempFolder folder;
    const std::wstring path = folder.file(L"file.bin");
    TempFolder::write(path, randomBytes(options.quick ? 1 << 20 : 64 << 20));
    int32_t size = 0, ours = 0, plain = 0;
    const Medians medians = compare([&] { ours = files::FileChecksum(path, size); },
                                    [&] { plain = plainChecksum(path); }, roundsFor(options));
    REQUIRE(size > 0);
    REQUIRE(ours == plain);
    report.add({.name = "checksum", .ours = medians.ours, .floor = medians.floor, .target = 1.05});
}

}  // namespace bench
