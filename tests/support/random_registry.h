// Random registry keys and values with a liking for what is hard to write down.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "tests/support/reg_reader.h"
#include "win32/base/utf16_bytes.h"

class RandomRegistry {
  public:
    explicit RandomRegistry(uint32_t seed) : random_(seed) {}

    size_t below(size_t limit) { return std::uniform_int_distribution<size_t>(0, limit - 1)(random_); }

    // Units from an alphabet that the notation has to treat with care, and from all of UTF-16.
    std::wstring text(size_t longest) {
        static const wchar_t hard[] = L"\"\\[]=@;,#%\t \r\n\x7F\x85\xE9\x416\x20AC\x2028\xFEFF\xFFFF";
        std::wstring result(below(longest + 1), L'\0');
        for (wchar_t& unit : result) {
            switch (below(4)) {
                case 0:
                    unit = hard[below(sizeof hard / sizeof *hard)];  // the last one is NUL
                    break;
                case 1:
                    unit = static_cast<wchar_t>(below(0x10000));
                    break;
                default:
                    unit = static_cast<wchar_t>(L'a' + below(26));
            }
        }
        return result;
    }

    std::string bytes(size_t longest) {
        std::string result(below(longest + 1), '\0');
        for (char& byte : result) byte = static_cast<char>(below(256));
        return result;
    }

    reg::Value value(const std::wstring& name) {
        static const uint32_t types[] = {0, 1, 1, 1, 2, 2,  3,  4,     4,         5,
                                         6, 7, 7, 8, 9, 10, 11, 0x100, 0xFFFFFFFF};
        reg::Value made{name, types[below(sizeof types / sizeof *types)], {}};
        switch (below(5)) {
            case 0:
                made.data = bytes(300);
                break;
            case 1:
                made.data = win32::bytesOf(text(60));
                break;
            case 2:
                made.data = bytes(5);
                break;
            default:
                made.data = win32::bytesOf(text(60) + L'\0');
        }
        return made;
    }

  private:
    std::mt19937 random_;
};
