// What is told of texts without asking Windows.
#include <doctest/doctest.h>

#include "win32/base/ascii.h"
#include "win32/base/blanks.h"
#include "win32/base/hex.h"
#include "win32/base/path.h"
#include "win32/base/utf16_bytes.h"
#include "win32/base/utf8.h"

using namespace std::string_literals;

namespace {

std::string utf8(const std::wstring& units) {
    std::string bytes = "<";
    win32::appendUtf8(bytes, units, [](wchar_t unit) { return unit; });
    return bytes + ">";
}

std::wstring units(std::initializer_list<unsigned> numbers) {
    std::wstring text;
    for (unsigned number : numbers) text += static_cast<wchar_t>(number);
    return text;
}

std::wstring hex(uint32_t number, int count) {
    std::wstring text = L"0x";
    win32::appendHex(text, number, count);
    return text;
}

}  // namespace

TEST_CASE("UTF-16 as UTF-8, at the ends of each length") {
    struct Row {
        std::wstring units;
        std::string bytes;
    };
    const Row rows[] = {
        {L"", ""},
        {L"plain text ~", "plain text ~"},
        {units({0, 0x1F, 0x20, 0x7E, 0x7F}), "\0\x1F\x20\x7E\x7F"s},
        {units({0x80, 0x7FF}), "\xC2\x80\xDF\xBF"},
        {units({0x800, 0xFFFF}), "\xE0\xA0\x80\xEF\xBF\xBF"},
        {units({0xD7FF, 0xE000}), "\xED\x9F\xBF\xEE\x80\x80"},
        {units({0xD800, 0xDC00}), "\xF0\x90\x80\x80"},
        {units({0xD800, 0xDFFF}), "\xF0\x90\x8F\xBF"},
        {units({0xDBFF, 0xDFFF}), "\xF4\x8F\xBF\xBF"},
        {units({0xDBFF, 0xDC00, 'a'}),
         "\xF4\x8F\xB0\x80"
         "a"},
        // Halves of pairs.
        {units({0xD800}), "\xEF\xBF\xBD"},
        {units({0xDC00, 'a'}),
         "\xEF\xBF\xBD"
         "a"},
        {units({0xDFFF, 0xDC00}), "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {units({0xD800, 0xDBFF, 0xE000}), "\xEF\xBF\xBD\xEF\xBF\xBD\xEE\x80\x80"},
        {units({0xD800, 0xE000}), "\xEF\xBF\xBD\xEE\x80\x80"},
    };
    for (const Row& row : rows) CHECK(utf8(row.units) == "<" + row.bytes + ">");
}

TEST_CASE("all but visible ASCII is seen before it becomes UTF-8") {
    std::wstring all, seen, expected;
    for (wchar_t unit = 1; unit < 0x100; ++unit) {
        all += unit;
        if (unit < 0x20 || unit > 0x7E) expected += unit;
    }
    std::string bytes;
    win32::appendUtf8(bytes, all, [&](wchar_t unit) {
        seen += unit;
        return L'?';
    });
    CHECK((seen == expected));
    CHECK(bytes.size() == all.size());
    CHECK(std::count(bytes.begin(), bytes.end(), '?') == static_cast<long>(expected.size()) + 1);
}

TEST_CASE("numbers as hexadecimal digits, the last so many") {
    CHECK((hex(0x0123abcd, 8) == L"0x0123abcd"));
    CHECK((hex(0x456789ef, 8) == L"0x456789ef"));
    CHECK((hex(0xFE, 2) == L"0xfe"));
    CHECK((hex(0x1F, 1) == L"0xf"));
    CHECK((hex(0, 4) == L"0x0000"));
}

TEST_CASE("bytes and units, the lower byte first") {
    CHECK(win32::byteAt("\x7F\xFE", 1) == 0xFE);
    CHECK(win32::unitAt("\x01\x7F\xFE", 1) == 0xFE7F);
    CHECK((win32::unitsOf("\x41\x00\xFE\xD8\x41"s) == units({0x41, 0xD8FE})));
    CHECK(win32::unitsOf("").empty());
    CHECK(win32::bytesOf(units({0x41, 0xD8FE})) == "\x41\x00\xFE\xD8"s);
    CHECK(win32::bytesOf(L"").empty());
}

TEST_CASE("letters A to Z in lower case, nothing else") {
    CHECK(win32::loweredAscii(L'A') == L'a');
    CHECK(win32::loweredAscii(L'Z') == L'z');
    for (wchar_t c : {L'@', L'[', L'a', L'z', L'\xC4', L'0'}) CHECK(win32::loweredAscii(c) == c);
    CHECK(win32::sameIgnoringAsciiCase(L"ABC", L"abc"));
    CHECK(win32::sameIgnoringAsciiCase(L"abc", L"ABC"));
    CHECK_FALSE(win32::sameIgnoringAsciiCase(L"abc", L"abd"));
    CHECK_FALSE(win32::sameIgnoringAsciiCase(L"abc", L"ab"));
    CHECK_FALSE(win32::sameIgnoringAsciiCase(L"ab", L"abc"));
    CHECK_FALSE(win32::sameIgnoringAsciiCase(L"\xC4", L"\xE4"));
}

TEST_CASE("the beginning of a text") {
    CHECK(win32::beginsWith(L"abc", L"ab"));
    CHECK(win32::beginsWith(L"abc", L"abc"));
    CHECK(win32::beginsWith(L"abc", L""));
    CHECK_FALSE(win32::beginsWith(L"abc", L"bc"));
    CHECK_FALSE(win32::beginsWith(L"ab", L"abc"));
    CHECK_FALSE(win32::beginsWith(L"Abc", L"ab"));
    CHECK(win32::beginsWithLowered(L"ABc", L"ab"));
    CHECK(win32::beginsWithLowered(L"ABC", L"abc"));
    CHECK_FALSE(win32::beginsWithLowered(L"AC", L"ab"));
    CHECK_FALSE(win32::beginsWithLowered(L"A", L"ab"));
}

TEST_CASE("blanks at both ends are cut, and nothing else is") {
    CHECK((win32::trimmed(L"  a b  ") == L"a b"));
    CHECK((win32::trimmed(L"\ta\t") == L"\ta\t"));
    CHECK((win32::trimmed(L"   ").empty()));
    CHECK((win32::trimmed(L"").empty()));
    CHECK((win32::trimmed(L"a ") == L"a"));
    CHECK((win32::trimmed(L" a") == L"a"));
}

TEST_CASE("a path with a backslash at its end, and which paths are full ones") {
    CHECK((win32::withBackslash(L"C:") == L"C:\\"));
    CHECK((win32::withBackslash(L"C:\\") == L"C:\\"));
    CHECK((win32::withBackslash(L"") == L"\\"));
    CHECK((win32::withBackslash(L"C:/") == L"C:/\\"));
    for (const wchar_t* path :
         {L"C:\\", L"c:/", L"C:\\a", L"\\\\server", L"//server", L"/\\s", L"\\\\?\\C:\\a", L"\\\\s"}) {
        const std::wstring text = path;
        CAPTURE(std::string(text.begin(), text.end()));
        CHECK(win32::isFullPath(text));
    }
    for (const wchar_t* path :
         {L"", L"C", L"C:", L"\\\\", L"C:a", L"\\a\\", L"a\\b", L"\\ab", L"a\\\\", L"a:b", L"C;\\"}) {
        const std::wstring text = path;
        CAPTURE(std::string(text.begin(), text.end()));
        CHECK_FALSE(win32::isFullPath(text));
    }
}
