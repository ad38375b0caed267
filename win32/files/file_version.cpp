#include "win32/files/file_version.h"

#include <cstring>

#include "win32/files/version_functions.h"
#include "win32/files/version_resource.h"

#include <winver.h>

namespace win32 {

namespace {

const DWORD versionSignature = 0xFEEF04BD;

std::wstring numbers(DWORD high, DWORD low) {
    return std::to_wstring(HIWORD(high)) + L'.' + std::to_wstring(LOWORD(high)) + L'.' +
           std::to_wstring(HIWORD(low)) + L'.' + std::to_wstring(LOWORD(low));
}

}  // namespace

std::wstring fileVersion(const std::wstring& path) {
    size_t room = 0;
    const OwnedPages block = readVersionBlock(path, room);
    if (!block) return {};
    return withFlavour([&]<class F>(F f) {
        void* found = nullptr;
        UINT length = 0;
        VS_FIXEDFILEINFO info;
        if (!versionFunctions<F>().queryValue(block.get(), f.in(L"\\"), &found, &length) || !found)
            return std::wstring();
        // The length and the place are those that the file tells: they are believed only inside the block.
        const size_t offset =
            static_cast<size_t>(static_cast<char*>(found) - static_cast<char*>(block.get()));
        if (length < sizeof info || offset > room - sizeof info) return std::wstring();
        std::memcpy(&info, found, sizeof info);
        if (info.dwSignature != versionSignature) return std::wstring();
        return numbers(info.dwFileVersionMS, info.dwFileVersionLS);
    });
}

}  // namespace win32
