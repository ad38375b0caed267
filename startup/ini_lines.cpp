#include "startup/ini_lines.h"

#include <algorithm>

#include "win32/blanks.h"

namespace startup {

namespace {

wchar_t lowerLetter(wchar_t c) {
    return c >= L'A' && c <= L'Z' ? c + (L'a' - L'A') : c;
}

bool isLineEnd(wchar_t c) {
    return c == L'\r' || c == L'\n';
}

}  // namespace

std::vector<std::wstring> iniLines(const std::wstring& text) {
    std::vector<std::wstring> lines;
    size_t start = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        if (!isLineEnd(text[at])) continue;
        lines.push_back(text.substr(start, at - start));
        if (at + 1 < text.size() && isLineEnd(text[at + 1])) ++at;
        start = at + 1;
    }
    if (start < text.size()) lines.push_back(text.substr(start));
    return lines;
}

bool isIniLine(const std::wstring& line, const std::wstring& key, std::wstring& rest) {
    const std::wstring trimmed = win32::trimmed(line);
    if (trimmed.size() < key.size()) return false;
    bool same = std::equal(key.begin(), key.end(), trimmed.begin(),
                           [](wchar_t expected, wchar_t c) { return expected == lowerLetter(c); });
    if (same) rest = win32::trimmed(trimmed.substr(key.size()));
    return same;
}

std::wstring withLinesReplaced(const std::wstring& text, const std::wstring& key,
                               const std::wstring& replacement) {
    std::wstring result, rest;
    result.reserve(text.size() + text.size() / 32);
    for (const std::wstring& line : iniLines(text)) {
        result += isIniLine(line, key, rest) ? replacement : line;
        result += L"\r\n";
    }
    return result;
}

}  // namespace startup
