#include <doctest/doctest.h>

#include <string>
#include <string_view>
#include <vector>

#include "startup/ini_lines.h"

using startup::isIniLine;
using startup::withLinesReplaced;
using Lines = std::vector<std::wstring>;

namespace {

Lines iniLines(std::wstring_view text) {
    Lines found;
    startup::IniLines lines(text);
    for (std::wstring_view line; lines.next(line);) found.emplace_back(line);
    return found;
}

}  // namespace

TEST_CASE("lines end at CR LF, LF and CR; what follows the last end is a line unless empty") {
    CHECK(iniLines(L"") == Lines{});
    CHECK(iniLines(L"a") == Lines{L"a"});
    CHECK(iniLines(L"a\r\nb\r\n") == Lines{L"a", L"b"});
    CHECK(iniLines(L"a\nb") == Lines{L"a", L"b"});
    CHECK(iniLines(L"a\rb\r") == Lines{L"a", L"b"});
    CHECK(iniLines(L"a\r\n\r\nb") == Lines{L"a", L"", L"b"});
}

TEST_CASE("a run of bare line ends shrinks, every pair of them counting as one") {
    CHECK(iniLines(L"a\n\nb") == Lines{L"a", L"b"});
    CHECK(iniLines(L"a\n\n\nb") == Lines{L"a", L"", L"b"});
    CHECK(iniLines(L"a\r\r\r\rb") == Lines{L"a", L"", L"b"});
}

TEST_CASE("a line is recognised by its key alone, in any letter case, with blanks around") {
    std::wstring_view rest = L"untouched";
    CHECK(isIniLine(L"load=x", L"load=", rest));
    CHECK(rest == L"x");
    CHECK(isIniLine(L"  LOAD=  x y  ", L"load=", rest));
    CHECK(rest == L"x y");
    CHECK(isIniLine(L"Run=", L"run=", rest));
    CHECK(rest == L"");
    rest = L"untouched";
    CHECK_FALSE(isIniLine(L"  LOAD = x", L"load=", rest));
    CHECK_FALSE(isIniLine(L"loads=x", L"load=", rest));
    CHECK_FALSE(isIniLine(L"load", L"load=", rest));
    CHECK_FALSE(isIniLine(L"\tload=x", L"load=", rest));
    CHECK_FALSE(isIniLine(L"", L"load=", rest));
    CHECK(rest == L"untouched");
}

TEST_CASE("the lines that start programs come in their order, whatever their section") {
    const auto lines =
        startup::startupLines(L"[a]\r\n load= x \r\nother=y\r\nSHELL=\r\n[b]\r\nRun=z\r\nload=w");
    REQUIRE(lines.size() == 4);
    const Lines expected = {L"load=", L"x", L"shell=", L"", L"run=", L"z", L"load=", L"w"};
    for (size_t i = 0; i < lines.size(); ++i) {
        CHECK(lines[i].key == expected[2 * i]);
        CHECK(lines[i].rest == expected[2 * i + 1]);
    }
    CHECK(startup::startupLines(L"").empty());
}

TEST_CASE("rewriting changes the key's lines, in every section, and nothing else") {
    const std::wstring bytes =
        L"[windows]\r\n LOAD=a.exe\r\n;load=b\r\nNullPort=\x00E9\x0080\x0001\r\n[x]\r\nload=\r\n";
    CHECK(withLinesReplaced(bytes, L"load=", L"load=") ==
          L"[windows]\r\nload=\r\n;load=b\r\nNullPort=\x00E9\x0080\x0001\r\n[x]\r\nload=\r\n");
    CHECK(withLinesReplaced(L"[boot]\nshell=x\n", L"shell=", L"shell=Explorer.exe") ==
          L"[boot]\r\nshell=Explorer.exe\r\n");
}

TEST_CASE("a file that is rewritten twice does not grow") {
    std::wstring once = withLinesReplaced(L"a\r\nload=x", L"load=", L"load=");
    CHECK(once == L"a\r\nload=\r\n");
    CHECK(withLinesReplaced(once, L"load=", L"load=") == once);
}
