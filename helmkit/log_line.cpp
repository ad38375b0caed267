#include "helmkit/log_line.h"

namespace helmkit {

namespace {

const wchar_t controlPictures = 0x2400;
const wchar_t pictureOfDelete = 0x2421;
const wchar_t pictureOfNewLine = 0x2424;

wchar_t printable(wchar_t c) {
    if (c < 0x20) return controlPictures + c;
    if (c == 0x7F) return pictureOfDelete;
    if (c == 0x85 || c == 0x2028 || c == 0x2029) return pictureOfNewLine;
    return c;
}

void append(std::wstring& line, std::wstring_view text) {
    for (wchar_t c : text) line += printable(c);
}

std::wstring digits(unsigned number, size_t width) {
    std::wstring text = std::to_wstring(number);
    return text.size() < width ? std::wstring(width - text.size(), L'0') + text : text;
}

}  // namespace

std::wstring logLine(const LogTime& time, int32_t code, std::wstring_view text, int32_t level,
                     std::wstring_view source) {
    std::wstring line = digits(time.year, 4) + L'-' + digits(time.month, 2) + L'-' + digits(time.day, 2) +
                        L'T' + digits(time.hour, 2) + L':' + digits(time.minute, 2) + L':' +
                        digits(time.second, 2) + L'.' + digits(time.millisecond, 3) + L'\t' +
                        std::to_wstring(level) + L'\t';
    append(line, source);
    line += L'\t' + std::to_wstring(code) + L'\t';
    append(line, text);
    return line + L"\r\n";
}

bool goesToShortLog(int32_t level) {
    return level < 5;
}

std::string_view wholeLines(std::string_view tail) {
    size_t end = tail.find('\n');
    return end == std::string_view::npos ? std::string_view() : tail.substr(end + 1);
}

}  // namespace helmkit
