#include "helmkit/log_line.h"

#include <iterator>

#include "win32/base/utf8.h"

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

void appendDigits(std::string& line, unsigned number, size_t width) {
    char digits[10];
    char* first = std::end(digits);
    for (; number != 0 || first + width > std::end(digits); number /= 10) {
        *--first = static_cast<char>('0' + number % 10);
    }
    line.append(first, std::end(digits));
}

void appendNumber(std::string& line, int32_t number) {
    if (number < 0) line += '-';
    appendDigits(line, number < 0 ? 0u - static_cast<unsigned>(number) : static_cast<unsigned>(number), 1);
}

}  // namespace

std::string timeText(const LogTime& time) {
    std::string text;
    appendDigits(text, time.year, 4);
    const struct {
        char before;
        unsigned number;
        size_t width;
    } parts[] = {{'-', time.month, 2},  {'-', time.day, 2},    {'T', time.hour, 2},
                 {':', time.minute, 2}, {':', time.second, 2}, {'.', time.millisecond, 3}};
    for (const auto& part : parts) {
        text += part.before;
        appendDigits(text, part.number, part.width);
    }
    return text;
}

std::string logLine(std::string_view time, int32_t code, std::wstring_view text, int32_t level,
                    std::wstring_view source) {
    const size_t numbersAndEnds = 30;
    std::string line;
    line.reserve(time.size() + win32::utf8Room(source.size()) + win32::utf8Room(text.size()) +
                 numbersAndEnds);
    line += time;
    line += '\t';
    appendNumber(line, level);
    line += '\t';
    win32::appendUtf8(line, source, printable);
    line += '\t';
    appendNumber(line, code);
    line += '\t';
    win32::appendUtf8(line, text, printable);
    line += "\r\n";
    return line;
}

bool goesToShortLog(int32_t level) {
    return level < 5;
}

std::string_view wholeLines(std::string_view tail) {
    size_t end = tail.find('\n');
    return end == std::string_view::npos ? std::string_view() : tail.substr(end + 1);
}

}  // namespace helmkit
