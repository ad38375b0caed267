#include "report/exact_text.h"

#include "win32/base/hex.h"
#include "win32/base/utf8.h"

namespace report {

namespace {

bool isHigh(wchar_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLow(wchar_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

int digitValue(wchar_t digit) {
    if (digit >= L'0' && digit <= L'9') return digit - L'0';
    if (digit >= L'a' && digit <= L'f') return digit - L'a' + 10;
    return -1;
}

}  // namespace

std::wstring writable(std::wstring_view text) {
    std::wstring result(text);
    for (size_t i = 0; i < result.size(); ++i) {
        if (isHigh(result[i]) && i + 1 < result.size() && isLow(result[i + 1])) {
            ++i;
        } else if (result[i] == L'\0' || isHigh(result[i]) || isLow(result[i])) {
            result[i] = 0xFFFD;
        }
    }
    return result;
}

bool isWritable(std::wstring_view text) {
    return writable(text) == text;
}

std::wstring unitsAsHex(std::wstring_view text) {
    std::wstring hex;
    for (wchar_t unit : text) win32::appendHex(hex, unit, 4);
    return hex;
}

bool unitsFromHex(std::wstring_view hex, std::wstring& text) {
    if (hex.size() % 4 != 0) return false;
    text.clear();
    for (size_t at = 0; at < hex.size(); at += 4) {
        int unit = 0;
        for (wchar_t digit : hex.substr(at, 4)) {
            const int value = digitValue(digit);
            if (value < 0) return false;
            unit = unit << 4 | value;
        }
        text += static_cast<wchar_t>(unit);
    }
    return true;
}

std::string utf8(std::wstring_view text) {
    std::string bytes;
    win32::appendUtf8(bytes, text, [](wchar_t unit) { return unit; });
    return bytes;
}

}  // namespace report
