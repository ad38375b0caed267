// The lines of the activity logs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace helmkit {

struct LogTime {
    unsigned year, month, day, hour, minute, second, millisecond;  // local time
};

// `2026-11-20T23:35:47.123`.
std::string timeText(const LogTime& time);

// `time<TAB>level<TAB>source<TAB>code<TAB>text` and CR LF in UTF-8. Control characters and line separators in
// source and text become their pictures (U+2400 and on), so that an entry stays one line of five fields;
// nothing else is escaped, paths stay readable. A line takes 32 KiB at most, of which its source 1 KiB: a
// longer text ends in the number of its characters that are missing.
std::string logLine(std::string_view time, int32_t code, std::wstring_view text, int32_t level,
                    std::wstring_view source);

// True for the levels that the short log gets too: errors, 0 to 4.
bool goesToShortLog(int32_t level);

// The last lines of a log file's tail: everything after its first line end. Nothing when it has no line end.
std::string_view wholeLines(std::string_view tail);

}  // namespace helmkit
