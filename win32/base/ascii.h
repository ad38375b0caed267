// Letters A to Z and the beginnings of texts, whatever the language. Calls nothing of Windows.
#pragma once

#include <algorithm>
#include <string_view>

namespace win32 {

inline wchar_t loweredAscii(wchar_t c) {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + (L'a' - L'A')) : c;
}

inline bool beginsWith(std::wstring_view text, std::wstring_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

// The same with A to Z of the text taken as lower case; the prefix is in lower case.
inline bool beginsWithLowered(std::wstring_view text, std::wstring_view lowerCasePrefix) {
    return text.size() >= lowerCasePrefix.size() &&
           std::equal(lowerCasePrefix.begin(), lowerCasePrefix.end(), text.begin(),
                      [](wchar_t expected, wchar_t c) { return expected == loweredAscii(c); });
}

inline bool sameIgnoringAsciiCase(std::wstring_view a, std::wstring_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](wchar_t x, wchar_t y) { return loweredAscii(x) == loweredAscii(y); });
}

}  // namespace win32
