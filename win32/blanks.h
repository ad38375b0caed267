// Blanks at the ends of a text. Calls nothing of Windows.
#pragma once

#include <string>
#include <string_view>

namespace win32 {

// Without the blanks (U+0020, no other white space) at both ends.
inline std::wstring trimmed(std::wstring_view text) {
    size_t first = text.find_first_not_of(L' ');
    if (first == std::wstring_view::npos) return {};
    return std::wstring(text.substr(first, text.find_last_not_of(L' ') - first + 1));
}

}  // namespace win32
