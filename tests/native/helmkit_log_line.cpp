#include <doctest/doctest.h>

#include "helmkit/log_line.h"

namespace {

const helmkit::LogTime time = {2026, 1, 2, 3, 4, 5, 6};

std::wstring line(std::wstring_view text, std::wstring_view source = L"") {
    return helmkit::logLine(time, -7, text, 4, source);
}

}  // namespace

TEST_CASE("a log line's fields stand between tabs, numbers in full width") {
    CHECK(line(L"text", L"ucRun.RefreshList") ==
          L"2026-01-02T03:04:05.006\t4\tucRun.RefreshList\t-7\ttext\r\n");
    CHECK(line(L"") == L"2026-01-02T03:04:05.006\t4\t\t-7\t\r\n");
}

TEST_CASE("control characters and line separators in a log line become their pictures") {
    CHECK(line(std::wstring(L"\0\t\r\n\x1f", 5), L"a\tb") ==
          L"2026-01-02T03:04:05.006\t4\ta\x2409"
          L"b\t-7\t\x2400\x2409\x240D\x240A\x241F\r\n");
    CHECK(line(L"\x7f\x85\x2028\x2029 \x80~") ==
          L"2026-01-02T03:04:05.006\t4\t\t-7\t\x2421\x2424\x2424\x2424 \x80~\r\n");
    CHECK(line(L"C:\\a") == L"2026-01-02T03:04:05.006\t4\t\t-7\tC:\\a\r\n");
}

TEST_CASE("levels 0 to 4 go to the short log") {
    for (int level : {0, 1, 4}) CHECK(helmkit::goesToShortLog(level));
    for (int level : {5, 6, 1000}) CHECK_FALSE(helmkit::goesToShortLog(level));
}

TEST_CASE("the tail of a log begins after its first line end") {
    CHECK(helmkit::wholeLines("rest\r\nwhole\r\n") == "whole\r\n");
    CHECK(helmkit::wholeLines("no end") == "");
    CHECK(helmkit::wholeLines("\n") == "");
    CHECK(helmkit::wholeLines("") == "");
}
