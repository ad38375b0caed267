#include "tests/support/hostile_names.h"

namespace {

using namespace std::string_literals;

const bool refused = false, omitted = false, ofValues = true;

HostileName ofValue(const char* what, const std::wstring& name) {
    return {what, name, true, true, ofValues};
}

HostileName withNul(const char* what, const std::wstring& name) {
    return {what, name, refused, omitted};
}

HostileName withLineEnd(const char* what, const std::wstring& name) {
    return {what, name, true, omitted};
}

}  // namespace

const std::vector<HostileName>& hostileNames() {
    static const std::vector<HostileName> rows = {
        ofValue("the default value", L""),
        {"one letter", L"q"},
        {"255 characters", std::wstring(255, L'n')},
        ofValue("256 characters", std::wstring(256, L'n')),
        ofValue("16,383 characters", std::wstring(16383, L'n')),
        withNul("an inner NUL", L"q\0evil"s),
        withNul("a leading NUL", L"\0q"s),
        withNul("a NUL at the end", L"q\0"s),
        withNul("one NUL", L"\0"s),
        withNul("NULs", std::wstring(200, L'\0')),
        withNul("a NUL and a line end", L"q\0\r\n"s),
        {"a quote", L"\""},
        {"quotes", L"\"a\" \"b\""},
        {"one quote inside", L"a\"b"},
        ofValue("a backslash", L"\\"),
        ofValue("backslashes", L"\\\\server\\share\\"),
        ofValue("a folder up", L"..\\..\\x"),
        ofValue("a quote behind a backslash", L"a\\\"b"),
        {"points", L".."},
        {"a slash", L"a/b"},
        {"an equals sign", L"="},
        {"an equals sign inside", L"a=b"},
        {"a quoted equals sign", L"\"=\""},
        {"an at sign", L"@"},
        {"brackets", L"[x]"},
        {"half a bracket", L"x]"},
        ofValue("a key's line", L"[HKEY_LOCAL_MACHINE\\SOFTWARE\\x]"),
        {"a comment", L"; x"},
        {"an omission", L"; not exported: [x]"},
        {"a hash", L"#x"},
        {"hex", L"hex(7):00"},
        {"number", L"dword:00000001"},
        withLineEnd("a carriage return", L"a\rb"),
        withLineEnd("a line feed", L"a\nb"),
        withLineEnd("a line end", L"\r\n"),
        withLineEnd("lines", L"a\r\n\"forged\"=\"x\"\r\n"),
        {"a tab", L"a\tb"},
        {"an escape", L"\x1B[31m"},
        {"control characters", L"\x01\x02\x1F\x7F"},
        {"a next line", L"a\x85z"},
        {"separators", L"a\x2028\x2029z"},
        {"an ampersand", L"&"},
        {"a mnemonic", L"&Delete && E&xit"},
        {"a percent", L"%"},
        {"a placeholder", L"%1"},
        {"placeholders", L"%1 %2 %3 %4 %5"},
        {"for printf", L"%s%n%p%99999d"},
        {"a variable", L"%windir%"},
        {"a blank", L" "},
        {"a blank before", L" x"},
        {"a blank behind", L"x "},
        {"a no-break blank", L"\xA0"},
        {"right-to-left override", L"a\x202Egpj.exe"},
        {"isolates", L"\x2066z\x2069"},
        {"nothing to see", L"\x200B"},
        {"a byte-order mark", L"\xFEFF"},
        {"no characters", L"\xFFFF\xFFFE"},
        {"half a surrogate pair", L"\xD83D"},
        {"the other half", L"\xDE00"},
        {"a pair", L"\xD83D\xDE00"},
        {"Cyrillic", L"\x0416"},
        {"an accent", L"\xE9"},
        {"an accent apart", L"e\x0301"},
        {"a dotless i", L"\x0131"},
        {"a sharp s", L"\xDF"},
        {"markup", L"<b>&amp;</b>"},
        {"a device", L"NUL"},
        {"a number", L"-1"},
        {"a root", L"HKEY_LOCAL_MACHINE"},
    };
    return rows;
}
