// Rewriting a key's lines leaves every other line, in its order, and no line of that key but the new ones.
#include <vector>

#include "startup/ini_lines.h"
#include "tests/native/fuzz/input.h"

namespace {

std::vector<std::wstring> otherLines(std::wstring_view text, std::wstring_view key, size_t& ofKey) {
    std::vector<std::wstring> others;
    std::wstring_view line, rest;
    ofKey = 0;
    for (startup::IniLines lines(text); lines.next(line);) {
        if (startup::isIniLine(line, key, rest)) {
            ++ofKey;
        } else {
            others.emplace_back(line);
        }
    }
    return others;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::wstring text = Input(data, size).letters(), key = L"shell=", line = L"shell=Explorer.exe";
    const std::wstring written = startup::withLinesReplaced(text, key, line);
    size_t before = 0, after = 0;
    require(otherLines(text, key, before) == otherLines(written, key, after), "another line has changed");
    require(before == after, "a line of the key has come or gone");
    require(startup::withLinesReplaced(written, key, line) == written, "a second time changes it again");
    for (const startup::IniLine& found : startup::startupLines(written))
        require(found.key != key || found.rest == L"Explorer.exe", "an old line is left");
    return 0;
}
