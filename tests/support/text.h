// Wide texts in the messages of failing checks.
#pragma once

#include <string>
#include <vector>

#include <doctest/doctest.h>

namespace doctest {

template <>
struct StringMaker<std::wstring> {
    static String convert(const std::wstring& text) {
        std::string shown = "L\"";
        for (wchar_t c : text) {
            const char digits[] = "0123456789abcdef";
            if (c >= 0x20 && c < 0x7F) {
                shown += static_cast<char>(c);
            } else {
                shown += "\\u";
                for (int shift = 12; shift >= 0; shift -= 4) shown += digits[c >> shift & 15];
            }
        }
        shown += '"';
        return shown.c_str();
    }
};

template <>
struct StringMaker<std::vector<std::wstring>> {
    static String convert(const std::vector<std::wstring>& texts) {
        String shown = "{";
        for (const std::wstring& text : texts) shown += StringMaker<std::wstring>::convert(text) + " ";
        return shown + "}";
    }
};

}  // namespace doctest
