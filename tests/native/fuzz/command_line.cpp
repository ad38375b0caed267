// Whatever stands in the registry, taking a command line apart ends, reads nothing outside the text and puts
// at most ".dll" or ".exe" to it.
#include "files/command_line.h"
#include "tests/native/fuzz/input.h"

namespace {

// What the rules look for; random bytes alone would hardly ever spell it.
const std::wstring pieces[] = {
    L" ",
    L"  ",
    L"\"",
    L"\\",
    L"/",
    L",",
    L".",
    L"%1",
    L"\"%1\"",
    L"\\??\\",
    L"rundll32",
    L"RunDll32",
    L".exe",
    L"\"rundll32.exe\"",
    L"C:\\",
    L".html",
    L"a",
    L"%SystemRoot%\\system32\\rundll32",
    L"x y",
    L"\t",
    std::wstring(1, L'\0'),
};
constexpr size_t pieceCount = sizeof pieces / sizeof *pieces;

// Low bytes choose a piece, the others stand for a UTF-16 unit of their own: half of them beyond ASCII.
std::wstring commandLine(const uint8_t* data, size_t size) {
    std::wstring text;
    for (size_t i = 0; i < size; ++i) {
        if (data[i] < 0x80) {
            text += pieces[data[i] % pieceCount];
        } else if (data[i] < 0xC0) {
            text += static_cast<wchar_t>(data[i] - 0x60);
        } else if (i + 1 < size) {
            unsigned unit = (data[i] & 0x3Fu) << 10 | data[i + 1];
            text += static_cast<wchar_t>(unit);
            ++i;
        }
    }
    // Of exact size: a read behind the last character is a read outside the allocation.
    text.shrink_to_fit();
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::wstring text = commandLine(data, size);
    std::wstring file = files::GetFileNameFromCommandLine(text);
    require(file.size() <= text.size() + 4 || file == L"rundll32.exe", "the result is longer than allowed");
    return 0;
}
