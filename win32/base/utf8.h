// UTF-16 as UTF-8. Calls nothing of Windows, where Windows 95 cannot do it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace win32 {

// The most bytes that so many units can take.
inline size_t utf8Room(size_t units) {
    return 3 * units;
}

// Writes one character at `at` and gives the place behind it; up to four bytes.
inline char* writeUtf8(char* at, uint32_t character) {
    auto continued = [&](int shift) { return static_cast<char>(0x80 | (character >> shift & 0x3F)); };
    if (character < 0x80) {
        *at++ = static_cast<char>(character);
        return at;
    }
    if (character < 0x800) {
        *at++ = static_cast<char>(0xC0 | character >> 6);
    } else if (character < 0x10000) {
        *at++ = static_cast<char>(0xE0 | character >> 12);
        *at++ = continued(6);
    } else {
        *at++ = static_cast<char>(0xF0 | character >> 18);
        *at++ = continued(12);
        *at++ = continued(6);
    }
    *at++ = continued(0);
    return at;
}

// Appends UTF-16 units, each but those of visible ASCII after `changed` has seen it. Half a surrogate pair
// becomes U+FFFD.
template <class Changed>
void appendUtf8(std::string& text, std::wstring_view units, Changed changed) {
    auto isBetween = [](uint32_t unit, uint32_t first, uint32_t last) {
        return unit >= first && unit <= last;
    };
    const size_t begin = text.size();
    text.resize(begin + utf8Room(units.size()));
    char* at = text.data() + begin;
    for (size_t i = 0; i < units.size(); ++i) {
        while (i < units.size() && isBetween(units[i], 0x20, 0x7E)) *at++ = static_cast<char>(units[i++]);
        if (i == units.size()) break;
        uint32_t unit = changed(units[i]);
        if (isBetween(unit, 0xD800, 0xDFFF)) {
            const uint32_t low = unit < 0xDC00 && i + 1 < units.size() ? units[i + 1] : 0;
            const bool isPair = isBetween(low, 0xDC00, 0xDFFF);
            unit = isPair ? 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00) : 0xFFFD;
            i += isPair;
        }
        at = writeUtf8(at, unit);
    }
    text.resize(static_cast<size_t>(at - text.data()));
}

}  // namespace win32
