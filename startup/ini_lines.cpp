#include "startup/ini_lines.h"

#include <algorithm>

#include "win32/base/ascii.h"
#include "win32/base/blanks.h"

namespace startup {

namespace {

bool isLineEnd(wchar_t c) {
    return c == L'\r' || c == L'\n';
}

}  // namespace

bool IniLines::next(std::wstring_view& line) {
    if (rest_.empty()) return false;
    size_t end = 0;
    while (end < rest_.size() && !isLineEnd(rest_[end])) ++end;
    line = rest_.substr(0, end);
    // Whatever pair of them stands there ends one line.
    const size_t most = std::min(end + 2, rest_.size());
    while (end < most && isLineEnd(rest_[end])) ++end;
    rest_.remove_prefix(end);
    return true;
}

bool isIniLine(std::wstring_view line, std::wstring_view key, std::wstring_view& rest) {
    line = win32::withoutBlanks(line);
    if (!win32::beginsWithLowered(line, key)) return false;
    rest = win32::withoutBlanks(line.substr(key.size()));
    return true;
}

std::vector<IniLine> startupLines(std::wstring_view text) {
    const std::wstring_view keys[] = {L"load=", L"run=", L"shell="};
    std::vector<IniLine> found;
    IniLines lines(text);
    for (std::wstring_view line, rest; lines.next(line);) {
        for (std::wstring_view key : keys) {
            if (isIniLine(line, key, rest)) found.push_back({std::wstring(key), std::wstring(rest)});
        }
    }
    return found;
}

std::wstring withLinesReplaced(std::wstring_view text, std::wstring_view key, std::wstring_view replacement) {
    std::wstring result;
    result.reserve(text.size());
    IniLines lines(text);
    for (std::wstring_view line, rest; lines.next(line);) {
        result += isIniLine(line, key, rest) ? replacement : line;
        result += L"\r\n";
    }
    return result;
}

}  // namespace startup
