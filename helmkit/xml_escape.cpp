#include "helmkit/xml_escape.h"

#include <cstdint>

namespace helmkit {

namespace {

const uint32_t replacement = 0xFFFD;

bool isHighSurrogate(uint32_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
bool isLowSurrogate(uint32_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

bool isForbidden(uint32_t c) {
    bool isControl = c < 0x20 && c != '\t' && c != '\n' && c != '\r';
    return isControl || isHighSurrogate(c) || isLowSurrogate(c) || c == 0xFFFE || c == 0xFFFF;
}

// The character at `i`, which moves to its last unit.
uint32_t characterAt(std::wstring_view text, size_t& i) {
    uint32_t c = text[i];
    if (!isHighSurrogate(c) || i + 1 == text.size() || !isLowSurrogate(text[i + 1])) return c;
    return 0x10000 + ((c - 0xD800) << 10) + (static_cast<uint32_t>(text[++i]) - 0xDC00);
}

void append(std::wstring& result, uint32_t c) {
    if (isForbidden(c)) c = replacement;
    if (c == '&') {
        result += L"&amp;";
    } else if (c == '<') {
        result += L"&lt;";
    } else if (c == '>') {
        result += L"&gt;";
    } else if (c == '\r' || c > 0x7E) {
        result += L"&#" + std::to_wstring(c) + L';';
    } else {
        result += static_cast<wchar_t>(c);
    }
}

}  // namespace

std::wstring xmlEscape(std::wstring_view text) {
    std::wstring result;
    for (size_t i = 0; i < text.size(); ++i) append(result, characterAt(text, i));
    return result;
}

}  // namespace helmkit
