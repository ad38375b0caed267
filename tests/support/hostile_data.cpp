#include "tests/support/hostile_data.h"

#include "win32/base/utf16_bytes.h"

namespace {

using namespace std::string_literals;

struct Text {
    const char* what;
    std::wstring units;  // as they are stored
    std::wstring text, file;
    std::string halfUnit = {};  // an odd byte behind them
};

const std::wstring path = L"C:\\nowhere\\x.exe";

// Text with its terminator that is a path without blanks and with an extension: its own file.
Text named(const char* what, const std::wstring& text) {
    return {what, text + L'\0', text, text};
}

std::wstring longPath(size_t length) {
    return L"C:\\nowhere\\" + std::wstring(length - 15, L'a') + L".exe";
}

std::wstring repeated(const std::wstring& text, int count) {
    std::wstring all;
    while (count--) all += text;
    return all;
}

std::wstring controls() {
    std::wstring all;
    for (wchar_t c = 1; c < 0x20; ++c) all += c;
    return all + L'\x7F';
}

const std::vector<Text>& endings() {
    static const std::vector<Text> rows = {
        named("plain", path),
        {"no terminator", path, path, path},
        {"three terminators", path + L"\0\0\0"s, path, path},
        {"half a unit behind the terminator", path + L'\0', path, path, "x"},
        {"half a terminator", path, path, path, "\0"s},
        {"half of the last letter", L"C:\\nowhere\\x.ex", L"C:\\nowhere\\x.ex", L"C:\\nowhere\\x.ex", "e"},
        {"one byte", L"", L"", L"", "C"},
        {"one letter", L"q", L"q", L"q"},
        {"empty", L"", L"", L""},
        {"half a NUL", L"", L"", L"", "\0"s},
        {"one NUL", L"\0"s, L"", L""},
        {"only NULs", std::wstring(2048, L'\0'), L"", L""},
        {"an inner NUL", path + L"\0C:\\evil.exe\0"s, path, path},
        {"a leading NUL", L'\0' + path + L'\0', L"", L""},
        {"a NUL behind the first letter", L"q\0x.exe\0"s, L"q", L"q"},
        {"64 KiB, no terminator", longPath(32768), longPath(32768), longPath(32768)},
        named("64 KiB and a terminator", longPath(32768)),
        named("300 characters", longPath(300)),
        named("32,767 characters", longPath(32767)),
    };
    return rows;
}

const std::vector<Text>& characters() {
    static const std::vector<Text> rows = {
        named("half a surrogate pair", L"C:\\nowhere\\\xD83D.exe"),
        named("the other half", L"C:\\nowhere\\\xDE00.exe"),
        named("halves the wrong way round", L"C:\\nowhere\\\xDE00\xD83D.exe"),
        {"half a pair at the end", path + L"\xD83D\0"s, path + L"\xD83D", path + L"\xD83D.exe"},
        named("a pair", L"C:\\nowhere\\\xD83D\xDE00.exe"),
        named("right-to-left override", L"C:\\nowhere\\x\x202Egpj.exe"),
        named("isolates and marks", L"C:\\nowhere\\\x2066x\x2069\x200E\x200F\x061C.exe"),
        named("nothing to see", L"C:\\nowhere\\\x200B\xFEFF\x00AD.exe"),
        named("no characters", L"C:\\nowhere\\\xFFFE\xFFFF\xFDD0.exe"),
        named("line and paragraph separators", L"C:\\nowhere\\\x2028\x2029\x85.exe"),
        named("control characters", L"C:\\nowhere\\" + controls() + L".exe"),
        named("only control characters", controls() + L".exe"),
        named("no-break blanks", L"C:\\nowhere\\\xA0x\xA0.exe"),
        named("full-width letters", L"\xFF23\xFF1A\\nowhere\\x.exe"),
        {"a forged log line", path + L"\r\n********** start app\0"s, path + L"\r\n********** start app",
         path + L"\r\n**********.exe"},
        {"one quote", L"\"\0"s, L"\"", L""},
        {"two quotes", L"\"\"\0"s, L"\"\"", L""},
        {"a thousand quotes", std::wstring(1000, L'"') + L'\0', std::wstring(1000, L'"'),
         std::wstring(998, L'"')},
        {"one blank", L" \0"s, L" ", L""},
        {"a thousand blanks", std::wstring(1000, L' ') + L'\0', std::wstring(1000, L' '), L""},
        {"one slash", L"/\0"s, L"/", L""},
        {"backslashes", std::wstring(3000, L'\\') + L'\0', std::wstring(3000, L'\\'),
         std::wstring(3000, L'\\') + L".exe"},
        named("markup", L"<script>&amp;]]>'--"),
    };
    return rows;
}

const std::vector<Text>& percents() {
    static const std::vector<Text> rows = {
        named("a percent", L"%"),
        named("two percents", L"%%"),
        named("percents", std::wstring(10001, L'%')),
        named("undefined", L"%QUILLON_UNDEFINED%"),
        named("undefined in a path", L"C:\\nowhere\\%QUILLON_UNDEFINED%\\x.exe"),
        named("recursive", L"%QUILLON_LOOP%"),
        named("recursive in a path", L"C:\\nowhere\\%QUILLON_LOOP%\\x.exe"),
        named("unbalanced", L"C:\\nowhere\\%QUILLON_LOOP\\x.exe"),
        named("unbalanced the other way", L"C:\\nowhere\\QUILLON_LOOP%\\x.exe"),
        named("placeholders", L"C:\\nowhere\\%1%2%9.exe"),
        named("for printf", L"C:\\nowhere\\%s%n%p%99999d.exe"),
        {"many placeholders", L"q " + repeated(L"\"%1\"", 5000) + L'\0', L"q " + repeated(L"\"%1\"", 5000),
         L"q"},
        {"an indirect string", L"@C:\\nowhere\\x.dll,-1\0"s, L"@C:\\nowhere\\x.dll,-1",
         L"@C:\\nowhere\\x.dll,-1.exe"},
        named("an indirect string without a number", L"@C:\\nowhere\\x.dll"),
    };
    return rows;
}

struct Sized {
    DWORD type;
    size_t size;
    const wchar_t* raw;
};

// The bytes are 01 02 03 and so on.
const Sized sizes[] = {
    {REG_NONE, 0, L""},
    {REG_NONE, 1, L"01"},
    {REG_NONE, 4, L"01,02,03,04"},
    {REG_BINARY, 0, L""},
    {REG_BINARY, 1, L"01"},
    {REG_BINARY, 3, L"01,02,03"},
    {REG_DWORD, 0, L""},
    {REG_DWORD, 1, L"01"},
    {REG_DWORD, 3, L"01,02,03"},
    {REG_DWORD, 4, L"67305985"},
    {REG_DWORD, 5, L"01,02,03,04,05"},
    {REG_DWORD, 8, L"01,02,03,04,05,06,07,08"},
    {REG_DWORD_BIG_ENDIAN, 0, L""},
    {REG_DWORD_BIG_ENDIAN, 2, L"01,02"},
    {REG_DWORD_BIG_ENDIAN, 4, L"16909060"},
    {REG_DWORD_BIG_ENDIAN, 7, L"01,02,03,04,05,06,07"},
    {REG_LINK, 0, L""},
    {REG_LINK, 1, L"01"},
    {REG_LINK, 6, L"01,02,03,04,05,06"},
    {REG_MULTI_SZ, 0, L""},
    {REG_MULTI_SZ, 1, L""},
    {REG_MULTI_SZ, 3, L"\x201"},
    {REG_MULTI_SZ, 4, L"\x201\x403"},
    {REG_RESOURCE_LIST, 0, L""},
    {REG_RESOURCE_LIST, 5, L"01,02,03,04,05"},
    {REG_FULL_RESOURCE_DESCRIPTOR, 0, L""},
    {REG_FULL_RESOURCE_DESCRIPTOR, 9, L"01,02,03,04,05,06,07,08,09"},
    {REG_RESOURCE_REQUIREMENTS_LIST, 0, L""},
    {REG_RESOURCE_REQUIREMENTS_LIST, 2, L"01,02"},
    {REG_QWORD, 0, L""},
    {REG_QWORD, 4, L"01,02,03,04"},
    {REG_QWORD, 7, L"01,02,03,04,05,06,07"},
    {REG_QWORD, 8, L"578437695752307201"},
    {REG_QWORD, 9, L"01,02,03,04,05,06,07,08,09"},
    {12, 4, L"01,02,03,04"},
    {0xDEAD, 0, L""},
    {0xDEAD, 1, L"01"},
    {0xDEAD, 4, L"01,02,03,04"},
    {0xDEAD, 7, L"01,02,03,04,05,06,07"},
    {0x80000001, 0, L""},
    {0x80000001, 2, L"01,02"},
    {0x80000001, 8, L"01,02,03,04,05,06,07,08"},
    {0xFFFFFFFF, 0, L""},
    {0xFFFFFFFF, 3, L"01,02,03"},
};

// Strings where another type stands: each is read as what it is.
const HostileData others[] = {
    {"strings", REG_MULTI_SZ, win32::bytesOf(L"a\0b\0\0"s), L"", L"a\nb", L""},
    {"one string", REG_MULTI_SZ, win32::bytesOf(L"a\0\0"s), L"", L"a", L""},
    {"strings without terminators", REG_MULTI_SZ, win32::bytesOf(L"a\0b"s), L"", L"a\nb", L""},
    {"an empty string first", REG_MULTI_SZ, win32::bytesOf(L"\0a\0\0"s), L"", L"\na", L""},
    {"an empty string between", REG_MULTI_SZ, win32::bytesOf(L"a\0\0b\0\0"s), L"", L"a\n\nb", L""},
    {"strings of nothing", REG_MULTI_SZ, win32::bytesOf(std::wstring(1000, L'\0')), L"", L"", L""},
    {"strings and half a unit", REG_MULTI_SZ, win32::bytesOf(L"a\0"s) + "b", L"", L"a", L""},
    {"a link's target", REG_LINK, win32::bytesOf(L"\\R"), L"", L"5c,00,52,00", L""},
    {"text as bytes", REG_BINARY, win32::bytesOf(L"q\0"s), L"", L"71,00,00,00", L""},
};

void addTexts(std::vector<HostileData>& all, const std::vector<Text>& rows, bool isLarge = false) {
    for (const Text& row : rows) {
        const std::string bytes = win32::bytesOf(row.units) + row.halfUnit;
        for (DWORD type : {REG_SZ, REG_EXPAND_SZ}) {
            const char* kind = type == REG_SZ ? "" : ", to be expanded";
            all.push_back({std::string(row.what) + kind, type, bytes, row.text, row.text, row.file, isLarge});
        }
    }
}

void addSizes(std::vector<HostileData>& all) {
    const std::string bytes = "\1\2\3\4\5\6\7\10\11";
    for (const Sized& row : sizes) {
        const std::string what =
            std::to_string(row.size) + " bytes of type " + std::to_string(static_cast<unsigned>(row.type));
        all.push_back({what, row.type, bytes.substr(0, row.size), L"", row.raw, L""});
    }
}

std::vector<HostileData> allData() {
    const size_t megabyte = 1 << 19;
    std::vector<HostileData> all;
    for (const auto& rows : {endings(), characters(), percents()}) addTexts(all, rows);
    addSizes(all);
    all.insert(all.end(), std::begin(others), std::end(others));
    addTexts(all, {named("1 MiB", longPath(megabyte)), named("3 MiB", longPath(3 * megabyte))}, true);
    all.push_back({"1 MiB of bytes", REG_BINARY, std::string(1 << 20, 'x'), L"",
                   repeated(L"78,", (1 << 20) - 1) + L"78", L"", true});
    return all;
}

}  // namespace

const std::vector<HostileData>& hostileData() {
    static const std::vector<HostileData> all = allData();
    return all;
}
