// Reports in files.
#pragma once

#include <string>

#include "report/entry.h"
#include "report/format.h"

namespace report {

// The bytes of a written report.
std::string encoded(const Format& format, const std::wstring& text);

// Writes the file whole or not at all, also when the user ends the program meanwhile. Throws a win32::Error.
void writeReportFile(const std::wstring& path, const Format& format, const std::wstring& text);

// Throws a win32::Error for a file that cannot be read, a MalformedReport for one that is no report.
Report readReportFile(const std::wstring& path);

}  // namespace report
