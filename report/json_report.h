// A report as JSON Lines, read back. Written by format_json.cpp, told in docs/report.md. Calls nothing of
// Windows.
#pragma once

#include <stdexcept>
#include <string>

#include "report/entry.h"

namespace report {

// Of the form: a reader refuses one that it does not know. New members alone do not make a new one.
constexpr int formVersion = 1;

// Behind the name of a member that could not be written exactly: its units in hex.
inline const std::wstring unitsSuffix = L"Utf16";

struct MalformedReport : std::runtime_error {
    explicit MalformedReport(std::wstring text) : std::runtime_error("malformed"), text(std::move(text)) {}
    std::wstring text;
};

// Members that are not known are left out. Throws a MalformedReport.
Report readJsonReport(const std::string& bytes);

}  // namespace report
