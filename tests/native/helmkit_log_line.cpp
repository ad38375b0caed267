#include <doctest/doctest.h>

#include "helmkit/log_line.h"

namespace {

const helmkit::LogTime time = {2026, 1, 2, 3, 4, 5, 6};

std::string line(std::wstring_view text, std::wstring_view source = L"") {
    return helmkit::logLine(helmkit::timeText(time), -7, text, 4, source);
}

}  // namespace

TEST_CASE("a log line's fields stand between tabs, numbers in full width") {
    CHECK(line(L"text", L"ucRun.RefreshList") ==
          "2026-01-02T03:04:05.006\t4\tucRun.RefreshList\t-7\ttext\r\n");
    CHECK(line(L"") == "2026-01-02T03:04:05.006\t4\t\t-7\t\r\n");
}

TEST_CASE("a log line's numbers are whole, whatever their size") {
    const unsigned most = 4294967295;
    CHECK(helmkit::timeText({most, most, 0, 10, 99, 100, 1000}) == "4294967295-4294967295-00T10:99:100.1000");
    CHECK(helmkit::logLine("", INT32_MIN, L"", INT32_MAX, L"") == "\t2147483647\t\t-2147483648\t\r\n");
    CHECK(helmkit::logLine("", 0, L"", -1, L"") == "\t-1\t\t0\t\r\n");
}

TEST_CASE("control characters and line separators in a log line become their pictures") {
    CHECK(line(std::wstring(L"\0\t\r\n\x1f", 5), L"a\tb") ==
          "2026-01-02T03:04:05.006\t4\ta\u2409b\t-7\t\u2400\u2409\u240D\u240A\u241F\r\n");
    CHECK(line(L"\x7f\x85\x2028\x2029 \x80~") ==
          "2026-01-02T03:04:05.006\t4\t\t-7\t\u2421\u2424\u2424\u2424 \xC2\x80~\r\n");
    CHECK(line(L"C:\\a") == "2026-01-02T03:04:05.006\t4\t\t-7\tC:\\a\r\n");
}

TEST_CASE("a log line is UTF-8, half a surrogate pair a replacement character") {
    auto textOf = [](std::wstring_view text) {
        const std::string all = line(text);
        return all.substr(30, all.size() - 32);
    };
    CHECK(textOf({L"\x00E9\x07FF\x0800\xFFFF", 4}) == "\xC3\xA9\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF");
    const wchar_t pair[] = {0xD83D, 0xDE00}, ends[] = {0xDE00, L'a', 0xD83D};
    CHECK(textOf({pair, 2}) == "\xF0\x9F\x98\x80");
    CHECK(textOf({ends, 3}) ==
          "\xEF\xBF\xBD"
          "a\xEF\xBF\xBD");
    CHECK(textOf({pair, 1}) == "\xEF\xBF\xBD");
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

TEST_CASE("a log line takes 32 KiB at most, and tells how many characters it lacks") {
    const size_t most = 32 << 10;
    const std::string head = "2026-01-02T03:04:05.006\t4\ts\t-7\t";
    const size_t room = most - head.size() - 2;
    CHECK(line(std::wstring(room, L'x'), L"s") == head + std::string(room, 'x') + "\r\n");
    for (const wchar_t* character : {L"x", L"\xE9", L"\x20AC"}) {
        std::wstring text;
        for (int i = 0; i < 1 << 20; ++i) text += character;
        const std::string cut = line(text, L"s");
        CHECK(cut.size() <= most);
        // The text gives way for its note.
        CHECK(cut.find(" [") <= most - 2 - 32);
        CHECK(cut.find(" [") >
              most - 2 - 32 - std::string(helmkit::logLine("", 0, character, 0, L"")).size() + 8);
        const std::string shown = helmkit::logLine("", 0, character, 0, L"").substr(6);
        const size_t end = cut.find(" [");
        REQUIRE(end != std::string::npos);
        const size_t kept = (end - head.size()) / (shown.size() - 2);
        CHECK(cut.substr(end) == " [" + std::to_string((1 << 20) - kept) + " more characters]\r\n");
    }
}

TEST_CASE("a long log line is not cut within a character, and a long source takes no room from its text") {
    std::wstring pairs;
    const wchar_t pair[] = {0xD83D, 0xDE00};
    for (int i = 0; i < 20000; ++i) pairs.append(pair, 2);
    for (size_t shift = 0; shift < 4; ++shift) {
        const std::string cut = line(std::wstring(shift, L'a') + pairs);
        const size_t end = cut.find(" [");
        REQUIRE(end != std::string::npos);
        CHECK(cut.substr(end - 4, 4) == "\xF0\x9F\x98\x80");
        CHECK(cut.substr(end) ==
              " [" + std::to_string(40000 - (end - 30 - shift) / 4 * 2) + " more characters]\r\n");
    }
    const std::string whole = line(L"text", std::wstring(100000, L's'));
    CHECK(whole.size() < 2000);
    CHECK(whole.substr(whole.size() - 10) == "\t-7\ttext\r\n");
}
