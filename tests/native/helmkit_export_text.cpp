// Lines that the registry editor of Windows writes, byte for byte.
#include <doctest/doctest.h>

#include "helmkit/export_text.h"
#include "win32/base/utf16_bytes.h"

using namespace std::string_literals;

namespace {

const std::wstring key = L"HKEY_CURRENT_USER\\k";

std::wstring line(const std::wstring& name, uint32_t type, const std::string& data) {
    std::wstring text;
    helmkit::appendValue(text, key, {name, type, data, data});
    return text;
}

std::wstring stringLine(const std::wstring& name, const std::wstring& text) {
    return line(name, 1, win32::bytesOf(text + L'\0'));
}

std::string counting(int count) {
    std::string bytes;
    for (int i = 0; i < count; ++i) bytes += static_cast<char>(i);
    return bytes;
}

}  // namespace

TEST_CASE("quoted strings escape quotes and backslashes only") {
    struct Row {
        const wchar_t *name, *text, *line;
    };
    const Row rows[] = {
        {L"", L"Default value name", L"@=\"Default value name\"\r\n"},
        {L"double\"quote", L"\"Hello, World!\"", L"\"double\\\"quote\"=\"\\\"Hello, World!\\\"\"\r\n"},
        {L"Backslash", L"Use \\\\ to escape", L"\"Backslash\"=\"Use \\\\\\\\ to escape\"\r\n"},
        {L"count/up", L"one/two", L"\"count/up\"=\"one/two\"\r\n"},
        {L"\\foo\\bar", L"", L"\"\\\\foo\\\\bar\"=\"\"\r\n"},
        {L"tab", L"a\tb\x85\x2028", L"\"tab\"=\"a\tb\x85\x2028\"\r\n"},
        {L"unicode_\xE9\x4E2D\x416", L"\xE9\x20AC", L"\"unicode_\xE9\x4E2D\x416\"=\"\xE9\x20AC\"\r\n"},
    };
    for (const Row& row : rows) CHECK((stringLine(row.name, row.text) == row.line));
}

TEST_CASE("strings that quotes cannot carry exactly become bytes") {
    struct Row {
        std::string data;
        const wchar_t* line;
    };
    const Row rows[] = {
        {""s, L"\"n\"=hex(1):\r\n"},
        {"a"s, L"\"n\"=hex(1):61\r\n"},
        {"a\0"s, L"\"n\"=hex(1):61,00\r\n"},
        {"a\0\0\0\0"s, L"\"n\"=hex(1):61,00,00,00,00\r\n"},
        {"a\0\0\0\0\0"s, L"\"n\"=hex(1):61,00,00,00,00,00\r\n"},
        {"a\0\r\0\0\0"s, L"\"n\"=hex(1):61,00,0d,00,00,00\r\n"},
        {"\n\0\0\0"s, L"\"n\"=hex(1):0a,00,00,00\r\n"},
        {"\0\0"s, L"\"n\"=\"\"\r\n"},
    };
    for (const Row& row : rows) CHECK((line(L"n", 1, row.data) == row.line));
}

TEST_CASE("numbers and types") {
    struct Row {
        uint32_t type;
        std::string data;
        const wchar_t* line;
    };
    const Row rows[] = {
        {4, "\x78\x56\x34\x12"s, L"\"n\"=dword:12345678\r\n"},
        {4, "\x00\x01\x00\x00"s, L"\"n\"=dword:00000100\r\n"},
        {4, ""s, L"\"n\"=hex(4):\r\n"},
        {4, "\1\2\3\4\5"s, L"\"n\"=hex(4):01,02,03,04,05\r\n"},
        {0, "Value\0"s, L"\"n\"=hex(0):56,61,6c,75,65,00\r\n"},
        {3, ""s, L"\"n\"=hex:\r\n"},
        {10, "\1"s, L"\"n\"=hex(a):01\r\n"},
        {0x100, ""s, L"\"n\"=hex(100):\r\n"},
        {0xFFFFFFFF, "\1"s, L"\"n\"=hex(ffffffff):01\r\n"},
        {7, "\0\0\0\0"s, L"\"n\"=hex(7):00,00,00,00\r\n"},
    };
    for (const Row& row : rows) CHECK((line(L"n", row.type, row.data) == row.line));
}

TEST_CASE("hex bytes are folded where the registry editor folds them") {
    CHECK((line(L"b22", 3, counting(22)) ==
           L"\"b22\"=hex:00,01,02,03,04,05,06,07,08,09,0a,0b,0c,0d,0e,0f,10,11,12,13,14,15\r\n"));
    CHECK((line(L"b23", 3, counting(23)) ==
           L"\"b23\"=hex:00,01,02,03,04,05,06,07,08,09,0a,0b,0c,0d,0e,0f,10,11,12,13,14,15,16\r\n"));
    CHECK((line(L"b24", 3, counting(24)) ==
           L"\"b24\"=hex:00,01,02,03,04,05,06,07,08,09,0a,0b,0c,0d,0e,0f,10,11,12,13,14,15,16,\\\r\n"
           L"  17\r\n"));
    CHECK((line(L"String expansion", 2, win32::bytesOf(std::wstring(L"%HOME%\\%PATH%\0", 14))) ==
           L"\"String expansion\"=hex(2):25,00,48,00,4f,00,4d,00,45,00,25,00,5c,00,25,00,50,\\\r\n"
           L"  00,41,00,54,00,48,00,25,00,00,00\r\n"));
    std::wstring longName(100, L'x');
    CHECK((line(longName, 3, counting(2)) == L"\"" + longName + L"\"=hex:00,\\\r\n  01\r\n"));
}

TEST_CASE("continuation lines hold 25 bytes, for as many as there are") {
    std::wstring text = line(L"b", 3, std::string(1 << 16, 'x'));
    size_t begin = text.find(L"\r\n") + 2;
    for (size_t end; (end = text.find(L"\r\n", begin)) != text.size() - 2; begin = end + 2) {
        REQUIRE(end - begin == 78);
    }
}

TEST_CASE("names that cannot be written become a comment") {
    CHECK(
        (stringLine(L"a\r\nb"s, L"x") == L"; not exported: [HKEY_CURRENT_USER\\k] \"a\\u000d\\u000ab\"\r\n"));
    CHECK((stringLine(L"\0x"s, L"x") == L"; not exported: [HKEY_CURRENT_USER\\k] \"\\u0000x\"\r\n"));
    std::wstring text;
    helmkit::appendOmittedKey(text, L"HKEY_CURRENT_USER\\k\nx", L"Access denied.");
    CHECK((text == L"; not exported: [HKEY_CURRENT_USER\\k\\u000ax] Access denied.\r\n"));
}

TEST_CASE("a key's header follows a blank line, its name as it is") {
    std::wstring text;
    helmkit::appendKeyHeader(text, L"HKEY_CURRENT_USER\\a]\"b");
    CHECK((text == L"\r\n[HKEY_CURRENT_USER\\a]\"b]\r\n"));
}

TEST_CASE("in a comment every character that ends a line for somebody is written as its code, and no other") {
    std::wstring text;
    helmkit::appendOmittedKey(text, L"\x01\x1F\x20~\x7F\x80\x84\x85\x86\x2027\x2028\x2029\x202A", L"a\tb");
    CHECK((text == L"; not exported: [\\u0001\\u001f ~\\u007f\x80\x84\\u0085\x86\x2027\\u2028\\u2029\x202A] "
                   L"a\\u0009b\r\n"));
    text.clear();
    helmkit::appendOmittedKey(text, L"k", L"");
    CHECK((text == L"; not exported: [k]\r\n"));
    CHECK(helmkit::canBeWritten(L""));
    CHECK(helmkit::canBeWritten(L"a\t\x0B\x0C\x0E\x01"));
    for (wchar_t c : {L'\0', L'\r', L'\n'}) {
        CHECK_FALSE(helmkit::canBeWritten(std::wstring{L'a', c}));
        CHECK_FALSE(helmkit::canBeWritten(std::wstring{c, L'a'}));
    }
}

TEST_CASE("room for a line is asked for once, and hardly more than it takes") {
    const struct {
        std::wstring name;
        uint32_t type;
        std::string data;
        size_t left;  // of the room, where the last fold has none behind it
    } rows[] = {{L"text", 1, win32::bytesOf(std::wstring(5000, L'\\') + L'\0'), 0},
                {L"", 1, win32::bytesOf(std::wstring(5000, L'x') + L'\0'), 0},
                {L"", 3, std::string(5000, 'x'), 6},
                {L"bytes", 3, std::string(5010, 'x'), 6},
                {L"words", 2, std::string(5024, 'x'), 1}};
    for (const auto& row : rows) {
        CAPTURE(&row - rows);
        const std::wstring text = line(row.name, row.type, row.data);
        CHECK(text.size() > 5000);
        CHECK(text.capacity() - text.size() == row.left);
    }
}
