// The SHA-256 of a file, by Windows' own CryptoAPI.
#pragma once

#include <string>

namespace win32 {

// 64 hexadecimal digits; empty where Windows has no SHA-256 (before XP SP3), for a file that cannot be read
// whole, and for one on another machine, of which nothing is read.
std::wstring sha256OfFile(const std::wstring& path);

}  // namespace win32
