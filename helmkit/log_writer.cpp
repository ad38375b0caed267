#include "helmkit/log_writer.h"

#include <optional>

#include "helmkit/log_line.h"
#include "win32/system/desktop.h"

namespace helmkit::server {

namespace {

const uint64_t fullLogLimit = 4 << 20;
const uint64_t shortLogLimit = 1 << 20;

// The newest lines of a log over its limit, half the limit at most. False for a log within its limit.
bool newestLines(const std::wstring& path, uint64_t limit, std::string& lines) {
    win32::FileReader file(path);
    if (file.size() <= limit) return false;
    std::string tail;
    tail.resize(static_cast<size_t>(limit / 2));
    file.skipTo(file.size() - tail.size());
    tail.resize(file.read(tail.data(), tail.size()));
    lines = wholeLines(tail);
    return true;
}

void cut(const std::wstring& path, uint64_t limit) {
    try {
        std::string lines;
        if (newestLines(path, limit, lines)) win32::replaceFile(path, lines);
    } catch (const win32::Error&) {
        // The log is new, or another run has it open: it is taken as it is.
    }
}

LogTime timeOf(const SYSTEMTIME& time) {
    return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds};
}

// Writes, and keeps the first failure for later.
void write(win32::AppendFile& file, const std::string& line, std::optional<win32::Error>& failure) {
    try {
        file.write(line);
    } catch (const win32::Error& error) {
        if (!failure) failure = error;
    }
}

}  // namespace

STDMETHODIMP LogWriter::OpenLogs(BSTR fullLogPath, BSTR shortLogPath) {
    return method([&] {
        full_ = win32::AppendFile();
        short_ = win32::AppendFile();
        std::wstring fullPath(win32::BString::view(fullLogPath)),
            shortPath(win32::BString::view(shortLogPath));
        cut(fullPath, fullLogLimit);
        cut(shortPath, shortLogLimit);
        // A link beside the program could lead the lines of an administrator's run into any file.
        win32::AppendFile full(fullPath, win32::Links::refused), brief(shortPath, win32::Links::refused);
        full_ = std::move(full);
        short_ = std::move(brief);
    });
}

const std::string& LogWriter::now() {
    const DWORD tick = win32::desktop().tickCount();
    if (tick != tick_) time_ = timeText(timeOf(win32::desktop().localTime()));
    tick_ = tick;
    return time_;
}

STDMETHODIMP LogWriter::WriteLog(LONG code, BSTR text, LONG level, BSTR source) {
    return method([&] {
        // Both are open, or neither.
        if (!full_) return;
        const std::string line =
            logLine(now(), code, win32::BString::view(text), level, win32::BString::view(source));
        std::optional<win32::Error> failure;
        write(full_, line, failure);
        if (goesToShortLog(level)) write(short_, line, failure);
        if (failure) throw *failure;
    });
}

}  // namespace helmkit::server
