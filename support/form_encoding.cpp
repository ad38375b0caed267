#include "support/form_encoding.h"

namespace support {

std::wstring encodeFormValue(const std::wstring& text) {
    std::wstring result;
    for (wchar_t c : text) {
        switch (c) {
            case L'+':
                result += L"%2B";
                break;
            case L'\r':
                result += L"%0D";
                break;
            case L'\n':
                result += L"%0A";
                break;
            case L'\\':
                result += L"%5C";
                break;
            default:
                result += c;
        }
    }
    return result;
}

}  // namespace support
