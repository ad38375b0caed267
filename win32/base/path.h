// Paths as texts. Calls nothing of Windows.
#pragma once

#include <string>

namespace win32 {

// With a backslash at its end.
inline std::wstring withBackslash(std::wstring path) {
    if (path.empty() || path.back() != L'\\') path += L'\\';
    return path;
}

}  // namespace win32
