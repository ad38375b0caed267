// Blanks at the ends of a text. Calls nothing of Windows.
#pragma once

#include <string>
#include <string_view>

namespace win32 {

// Without the blanks (U+0020, no other white space) at both ends: a part of the same text.
inline std::wstring_view withoutBlanks(std::wstring_view text) {
    while (!text.empty() && text.front() == L' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == L' ') text.remove_suffix(1);
    return text;
}

// The same as a text of its own.
inline std::wstring trimmed(std::wstring_view text) {
    return std::wstring(withoutBlanks(text));
}

}  // namespace win32
