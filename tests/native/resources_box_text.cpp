#include <doctest/doctest.h>

#include "resources/box_text.h"

using resources::boxText;

TEST_CASE("what a box may show: visible controls, no marks that write the question anew") {
    CHECK(boxText(L"plain \x00E9\x4E00 text", false) == L"plain \x00E9\x4E00 text");
    CHECK(boxText(std::wstring(L"a\0\r\n\t\x1F\x7F", 7), false) == L"a\x2400\x240D\x240A\x2409\x241F\x2421");
    for (wchar_t mark :
         {0x80, 0x85, 0x9F, 0x61C, 0x200E, 0x200F, 0x2028, 0x2029, 0x202A, 0x202E, 0x2066, 0x2069}) {
        CHECK(boxText(std::wstring(1, mark), false) == L"\xFFFD");
        CHECK(boxText(std::wstring(1, mark), true) == L"?");
    }
    for (wchar_t ordinary :
         {0x20, 0x7E, 0xA0, 0x61B, 0x61D, 0x200D, 0x2010, 0x2027, 0x202F, 0x2065, 0x206A}) {
        CHECK(boxText(std::wstring(1, ordinary), false) == std::wstring(1, ordinary));
    }
    CHECK(boxText(std::wstring(L"\0\n\x7F", 3), true) == L"???");
    CHECK(boxText(L"", false) == L"");
}

TEST_CASE("a long text keeps its beginning and its end, a thousand characters in all") {
    CHECK(boxText(std::wstring(1000, L'x'), false) == std::wstring(1000, L'x'));
    std::wstring longer(1001, L'x');
    longer.front() = L'a';
    longer.back() = L'z';
    const std::wstring shown = boxText(longer, false);
    CHECK(shown.size() == 1000);
    CHECK(shown.front() == L'a');
    CHECK(shown.back() == L'z');
    CHECK(shown[500] == 0x2026);
    CHECK(boxText(std::wstring(1 << 20, L'y'), true).size() == 1000);
}

TEST_CASE("no pair of surrogates is cut in its middle") {
    for (size_t before : {498, 499, 500, 501}) {
        std::wstring text(before, L'x');
        while (text.size() < 3000) text += std::wstring({wchar_t(0xD83D), wchar_t(0xDE00)});
        const std::wstring shown = boxText(text, false);
        CHECK(shown.size() <= 1000);
        CHECK(shown.size() >= 997);
        for (size_t i = before; i < shown.size(); ++i) {
            if (shown[i] == 0x2026) continue;
            CHECK(shown[i] == 0xD83D);
            REQUIRE(i + 1 < shown.size());
            CHECK(shown[++i] == 0xDE00);
        }
    }
}
