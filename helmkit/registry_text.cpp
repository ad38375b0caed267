#include "helmkit/registry_text.h"

#include <algorithm>

#include "win32/base/hex.h"
#include "win32/base/utf16_bytes.h"

namespace helmkit {

namespace {

const int32_t moreThanAString = 234;   // ERROR_MORE_DATA
const int32_t unsupportedType = 1630;  // ERROR_UNSUPPORTED_TYPE

std::wstring joinedStrings(std::wstring units) {
    while (!units.empty() && units.back() == L'\0') units.pop_back();
    for (wchar_t& unit : units) {
        if (unit == L'\0') unit = L'\n';
    }
    return units;
}

std::wstring decimal(std::string_view data, bool isBigEndian) {
    uint64_t number = 0;
    for (size_t i = 0; i < data.size(); ++i) {
        size_t at = isBigEndian ? i : data.size() - 1 - i;
        number = number << 8 | win32::byteAt(data, at);
    }
    return std::to_wstring(number);
}

std::wstring hexBytes(std::string_view data) {
    std::wstring text;
    text.reserve(3 * data.size());
    for (size_t i = 0; i < data.size(); ++i) {
        if (i) text += L',';
        win32::appendHex(text, win32::byteAt(data, i), 2);
    }
    return text;
}

}  // namespace

ValueText textOfValue(uint32_t type, std::string_view data) {
    if (type == typeString || type == typeExpandString) {
        std::wstring units = win32::unitsOf(data);
        units.resize(std::min(units.size(), units.find(L'\0')));
        return {std::move(units), 0};
    }
    if (type == typeMultiString) return {joinedStrings(win32::unitsOf(data)), moreThanAString};
    bool isNumber = ((type == typeNumber || type == typeBigEndianNumber) && data.size() == 4) ||
                    (type == typeLongNumber && data.size() == 8);
    if (isNumber) return {decimal(data, type == typeBigEndianNumber), unsupportedType};
    return {hexBytes(data), unsupportedType};
}

std::string dataOfString(uint32_t type, std::wstring_view text) {
    std::wstring units(text);
    units += L'\0';
    if (type == typeMultiString) units += L'\0';
    return win32::bytesOf(units);
}

}  // namespace helmkit
