#include "resources/box_text.h"

#include <algorithm>
#include <iterator>

namespace resources {

namespace {

const size_t most = 1000;
const wchar_t ellipsis = 0x2026, replacement = 0xFFFD, controlPictures = 0x2400, pictureOfDelete = 0x2421;

const struct {
    wchar_t first, last;
} invisible[] = {{0x80, 0x9F},     {0x61C, 0x61C},   {0x200E, 0x200F},
                 {0x2028, 0x2029}, {0x202A, 0x202E}, {0x2066, 0x2069}};

wchar_t visible(wchar_t c) {
    if (c < 0x20) return static_cast<wchar_t>(controlPictures + c);
    if (c == 0x7F) return pictureOfDelete;
    const bool isInvisible = std::any_of(std::begin(invisible), std::end(invisible), [&](const auto& range) {
        return c >= range.first && c <= range.last;
    });
    return isInvisible ? replacement : c;
}

bool isLowSurrogate(wchar_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

// No pair of surrogates is cut in its middle.
std::wstring shortened(const std::wstring& text) {
    if (text.size() <= most) return text;
    size_t head = most / 2, tail = text.size() - (most - head - 1);
    if (isLowSurrogate(text[head])) --head;
    if (isLowSurrogate(text[tail])) ++tail;
    return text.substr(0, head) + ellipsis + text.substr(tail);
}

}  // namespace

std::wstring boxText(const std::wstring& text, bool isAnsi) {
    std::wstring shown = shortened(text);
    for (wchar_t& c : shown) {
        const wchar_t changed = visible(c);
        if (changed != c) c = isAnsi ? L'?' : changed;
    }
    return shown;
}

}  // namespace resources
