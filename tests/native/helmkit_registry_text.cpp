#include <doctest/doctest.h>

#include "helmkit/registry_text.h"
#include "win32/base/utf16_bytes.h"

using namespace std::string_literals;

TEST_CASE("registry data as text, whatever stands in it") {
    struct Row {
        uint32_t type;
        std::string data;
        std::wstring text;
        int32_t status;
    };
    const Row rows[] = {
        {1, "a\0b\0\0\0"s, L"ab", 0},
        {1, "a\0b\0"s, L"ab", 0},
        {1, "a\0b\0c"s, L"ab", 0},
        {1, "a\0\0\0b\0"s, L"a", 0},
        {1, "x"s, L"", 0},
        {1, ""s, L"", 0},
        {2, "%\0a\0%\0\0\0"s, L"%a%", 0},
        {7, "a\0\0\0b\0\0\0\0\0"s, L"a\nb", 234},
        {7, "a\0\0\0b\0"s, L"a\nb", 234},
        {7, "a\0\0\0\0\0b\0\0\0\0\0"s, L"a\n\nb", 234},
        {7, "\0\0\0\0"s, L"", 234},
        {7, ""s, L"", 234},
        {4, "\x01\x02\x03\x84"s, L"2214789633", 1630},
        {5, "\x01\x02\x03\x04"s, L"16909060", 1630},
        {11, "\xff\xff\xff\xff\xff\xff\xff\xff"s, L"18446744073709551615", 1630},
        {4, "\x01"s, L"01", 1630},
        {4, ""s, L"", 1630},
        {11, "\x01\x02\x03\x04"s, L"01,02,03,04", 1630},
        {3, "\x00\xab"s, L"00,ab", 1630},
        {0xFFFFFFFF, "a"s, L"61", 1630},
    };
    for (const Row& row : rows) {
        CAPTURE(row.type);
        helmkit::ValueText value = helmkit::textOfValue(row.type, row.data);
        bool isSame = value.text == row.text;
        CHECK(isSame);
        CHECK(value.status == row.status);
    }
}

TEST_CASE("bytes as text take the room that they need and little more") {
    const std::wstring text = helmkit::textOfValue(3, std::string(1000, 'x')).text;
    CHECK(text.size() == 2999);
    CHECK(text.capacity() <= 3000);
}

TEST_CASE("a string becomes data with its terminators") {
    CHECK(helmkit::dataOfString(1, L"ab") == "a\0b\0\0\0"s);
    CHECK(helmkit::dataOfString(2, L"") == "\0\0"s);
    CHECK(helmkit::dataOfString(7, L"a") == "a\0\0\0\0\0"s);
    CHECK(helmkit::dataOfString(1, L"\u0416") == "\x16\x04\0\0"s);
}
