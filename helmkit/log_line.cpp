#include "helmkit/log_line.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "win32/base/utf8.h"

namespace helmkit {

namespace {

const size_t longestLine = 32 << 10, longestSource = 1 << 10;

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
    char digits[std::numeric_limits<unsigned>::digits10 + 1];
    char* first = std::end(digits);
    for (; number != 0 || first + width > std::end(digits); number /= 10) {
        *--first = static_cast<char>('0' + number % 10);
    }
    line.append(first, std::end(digits));
}

// How many UTF-16 units stand in whole characters of UTF-8.
size_t unitsIn(std::string_view bytes) {
    size_t units = 0;
    for (char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        units += (byte & 0xC0) != 0x80;
        units += byte >= 0xF0;
    }
    return units;
}

bool isContinued(char byte) {
    return (byte & 0xC0) == 0x80;
}

// Appends the text, in at most so many bytes; one that takes more ends in the number of those that are
// missing.
void appendWithin(std::string& line, size_t room, std::wstring_view text) {
    const size_t begin = line.size(), roomOfNote = 32;
    // No unit takes less than a byte.
    win32::appendUtf8(line, text.substr(0, room), printable);
    if (text.size() <= room && line.size() - begin <= room) return;
    size_t end = begin + room - roomOfNote;
    while (isContinued(line[end])) --end;
    line.resize(end);
    const size_t missing = text.size() - unitsIn(std::string_view(line).substr(begin));
    line += " [" + std::to_string(missing) + " more characters]";
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
    const size_t numbersAndEnds = 30, lineEnd = 2;
    std::string line;
    line.reserve(time.size() + win32::utf8Room(std::min(source.size(), longestSource)) +
                 win32::utf8Room(std::min(text.size(), longestLine)) + numbersAndEnds);
    line += time;
    line += '\t';
    line += std::to_string(level);
    line += '\t';
    appendWithin(line, longestSource, source);
    line += '\t';
    line += std::to_string(code);
    line += '\t';
    appendWithin(line, longestLine - line.size() - lineEnd, text);
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
