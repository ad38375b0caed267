// A fuzzer's bytes as the pieces that a test wants, and its way to complain.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "win32/base/utf16_bytes.h"

// Numbers come from the front, as zeros when nothing is left.
class Input {
  public:
    Input(const uint8_t* data, size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

    bool isEmpty() const { return rest_.empty(); }
    unsigned byte() {
        if (rest_.empty()) return 0;
        const unsigned value = win32::byteAt(rest_, 0);
        rest_.remove_prefix(1);
        return value;
    }
    std::string bytes(size_t count) {
        std::string taken(rest_.substr(0, count));
        rest_.remove_prefix(taken.size());
        taken.shrink_to_fit();
        return taken;
    }
    std::string bytes() { return bytes(rest_.size()); }
    // A unit for each two bytes.
    std::wstring text(size_t units) { return win32::unitsOf(bytes(2 * units)); }
    std::wstring text() { return win32::unitsOf(bytes()); }
    // A unit for each byte, as in a file of one byte per character.
    std::wstring letters() {
        const std::string taken = bytes();
        std::wstring text(taken.size(), L'\0');
        std::transform(taken.begin(), taken.end(), text.begin(),
                       [](char c) { return static_cast<unsigned char>(c); });
        return text;
    }

  private:
    std::string_view rest_;
};

inline void require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}
