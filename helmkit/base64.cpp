#include "helmkit/base64.h"

#include "win32/base/utf16_bytes.h"

namespace helmkit {

std::wstring base64(std::string_view bytes) {
    const wchar_t alphabet[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::wstring text;
    for (size_t i = 0; i < bytes.size(); i += 3) {
        unsigned group = 0;
        for (size_t k = i; k < i + 3; ++k)
            group = group << 8 | (k < bytes.size() ? win32::byteAt(bytes, k) : 0);
        for (size_t k = 0; k < 4; ++k)
            text += i + k <= bytes.size() ? alphabet[group >> (18 - 6 * k) & 63] : L'=';
    }
    return text;
}

}  // namespace helmkit
