// Numbers as hexadecimal digits. Calls nothing of Windows.
#pragma once

#include <cstdint>
#include <string>

namespace win32 {

// Appends the last `count` digits of a number, in lower case.
inline void appendHex(std::wstring& text, uint32_t number, int count) {
    for (int shift = 4 * (count - 1); shift >= 0; shift -= 4)
        text += L"0123456789abcdef"[number >> shift & 15];
}

}  // namespace win32
