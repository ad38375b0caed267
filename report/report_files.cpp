#include "report/report_files.h"

#include "report/exact_text.h"
#include "report/json_report.h"
#include "win32/base/error.h"
#include "win32/files/files.h"
#include "win32/system/console.h"

namespace report {

namespace {

// The report of a machine with ten thousand entries takes less than a tenth of this.
const uint64_t largestReport = 256 << 20;

}  // namespace

std::string encoded(const Format& format, const std::wstring& text) {
    return (format.beginsWithByteOrderMark() ? "\xEF\xBB\xBF" : "") + utf8(text);
}

void writeReportFile(const std::wstring& path, const Format& format, const std::wstring& text) {
    const std::string bytes = encoded(format, text);
    win32::NoInterruption meanwhile;
    win32::replaceFile(path, bytes);
}

Report readReportFile(const std::wstring& path) {
    win32::FileReader file(path);
    if (file.size() > largestReport) win32::raiseWin32(ERROR_FILE_TOO_LARGE, path);
    std::string bytes(static_cast<size_t>(file.size()), '\0');
    bytes.resize(file.read(bytes.data(), bytes.size()));
    return readJsonReport(bytes);
}

}  // namespace report
