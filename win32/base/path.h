// Paths as texts. Calls nothing of Windows.
#pragma once

#include <string>

namespace win32 {

// With a backslash at its end.
inline std::wstring withBackslash(std::wstring path) {
    if (path.empty() || path.back() != L'\\') path += L'\\';
    return path;
}

inline bool isPathSeparator(wchar_t c) {
    return c == L'\\' || c == L'/';
}

// True for a path that means the same file whatever the current folder and drive are: from a drive's root or
// a server on.
inline bool isFullPath(const std::wstring& path) {
    if (path.size() < 3) return false;
    const bool isServer = isPathSeparator(path[0]) && isPathSeparator(path[1]);
    return isServer || (path[1] == L':' && isPathSeparator(path[2]));
}

}  // namespace win32
