// UTF-16 little-endian bytes, as the registry and version resources store text, and its units.
//
// Bytes stand in a std::string, units in a std::wstring of one unit per character, also where wchar_t is
// wider.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace win32 {

inline unsigned byteAt(std::string_view bytes, size_t index) {
    return static_cast<unsigned char>(bytes[index]);
}

// A 16-bit number at a byte offset, which need not be even; the caller has checked that two bytes are there.
inline unsigned unitAt(std::string_view bytes, size_t offset) {
    return byteAt(bytes, offset) | byteAt(bytes, offset + 1) << 8;
}

// The whole units; an odd last byte is left out.
inline std::wstring unitsOf(std::string_view bytes) {
    std::wstring units(bytes.size() / 2, L'\0');
    for (size_t i = 0; i < units.size(); ++i) units[i] = static_cast<wchar_t>(unitAt(bytes, 2 * i));
    return units;
}

inline std::string bytesOf(std::wstring_view units) {
    std::string bytes(units.size() * 2, '\0');
    for (size_t i = 0; i < units.size(); ++i) {
        bytes[2 * i] = static_cast<char>(units[i] & 0xFF);
        bytes[2 * i + 1] = static_cast<char>(units[i] >> 8 & 0xFF);
    }
    return bytes;
}

}  // namespace win32
