#include <doctest/doctest.h>

#include "helmkit/base64.h"
#include "helmkit/format_message.h"
#include "helmkit/xml_escape.h"

using namespace std::string_literals;

TEST_CASE("placeholders are filled in one pass") {
    struct Row {
        std::wstring text;
        std::vector<std::wstring> arguments;
        std::wstring result;
    };
    const Row rows[] = {
        {L"Are you sure you want to delete '%1' from startup?",
         {L"a"},
         L"Are you sure you want to delete 'a' from startup?"},
        {L"%1\\Backup %2.reg", {L"C:", L"Nov"}, L"C:\\Backup Nov.reg"},
        {L"%2%1%1", {L"a", L"b"}, L"baa"},
        {L"%1 %2", {L"%2", L"x"}, L"%2 x"},
        {L"%1 %2 %3", {L"a"}, L"a %2 %3"},
        {L"%0 %a %% %", {L"a"}, L"%0 %a %% %"},
        {L"%%1", {L"a"}, L"%a"},
        {L"%12", {L"a"}, L"a2"},
        {L"%9", {L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8", L"nine"}, L"nine"},
        {L"%1%2%9%:%;",
         {L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8", L"9", L"ten", L"eleven"},
         L"129%:%;"},
        {L"%", {L"a"}, L"%"},
        {L"", {}, L""},
        {L"\0%1"s, {L"\0"s}, L"\0\0"s},
    };
    for (const Row& row : rows) CHECK((helmkit::formatMessage(row.text, row.arguments) == row.result));
}

TEST_CASE("text is escaped for XML content") {
    struct Row {
        std::wstring text, escaped;
    };
    const Row rows[] = {
        {L"a & b < c > d \"e\" 'f'", L"a &amp; b &lt; c &gt; d \"e\" 'f'"},
        {L"\t\n\r", L"\t\n&#13;"},
        {L"~\x7f\xe9\x416", L"~&#127;&#233;&#1046;"},
        {L"\0\x01\x1f"s, L"&#65533;&#65533;&#65533;"},
        {L"\xFFFE\xFFFF", L"&#65533;&#65533;"},
        {std::wstring{wchar_t(0xD83D), wchar_t(0xDE00)}, L"&#128512;"},
        {std::wstring{wchar_t(0xD83D)}, L"&#65533;"},
        {std::wstring{wchar_t(0xD83D), L'a'}, L"&#65533;a"},
        {std::wstring{wchar_t(0xDE00), wchar_t(0xD83D)}, L"&#65533;&#65533;"},
        {L"]]>", L"]]&gt;"},
        {L"\x0B\x0C\x0E ", L"&#65533;&#65533;&#65533; "},
        {L"\xD7FF\xE000\xFFFC\xFFFD", L"&#55295;&#57344;&#65532;&#65533;"},
        {L"\xD800\xDC00\xDBFF\xDFFF", L"&#65536;&#1114111;"},
        {L"\xDBFF\xDBFF", L"&#65533;&#65533;"},
        {L"\xDC00\xDFFF", L"&#65533;&#65533;"},
        {L"\xD800\xDBFF\xDBFF\xE000", L"&#65533;&#65533;&#65533;&#57344;"},
        {L"", L""},
    };
    for (const Row& row : rows) CHECK((helmkit::xmlEscape(row.text) == row.escaped));
}

TEST_CASE("bytes as base64, without line breaks") {
    struct Row {
        std::string bytes;
        std::wstring text;
    };
    const Row rows[] = {
        {"", L""},
        {"f", L"Zg=="},
        {"fo", L"Zm8="},
        {"foo", L"Zm9v"},
        {"foob", L"Zm9vYg=="},
        {"fooba", L"Zm9vYmE="},
        {"foobar", L"Zm9vYmFy"},
        {"\0\xff\xfe"s, L"AP/+"},
        {"\xfb\xef\xbe"s, L"++++"},
    };
    for (const Row& row : rows) CHECK((helmkit::base64(row.bytes) == row.text));
    CHECK(helmkit::base64(std::string(300, 'x')).size() == 400);
    // Every sign of it, in turn.
    std::string bytes;
    for (unsigned i = 0; i < 64; i += 4) {
        const unsigned group = i << 18 | (i + 1) << 12 | (i + 2) << 6 | (i + 3);
        for (int shift : {16, 8, 0}) bytes += static_cast<char>(group >> shift);
    }
    CHECK((helmkit::base64(bytes) == L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"));
}
