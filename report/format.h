// The forms that a report is written in. A new one is a file format_NAME.cpp and a row of the table in
// format.cpp. Calls nothing of Windows.
#pragma once

#include <string>
#include <string_view>

#include "report/compare.h"
#include "report/entry.h"

namespace report {

class Format {
  public:
    virtual ~Format() = default;

    // As UTF-16 without NUL or half surrogate pairs, lines ended as the form wants them.
    virtual std::wstring written(const Report& report) const = 0;

    virtual bool canCompare() const { return false; }
    // Only for a form that can.
    virtual std::wstring written(const Difference&) const { return {}; }

    // Spreadsheets take a file without it for one in the code page.
    virtual bool beginsWithByteOrderMark() const { return false; }
};

const Format& textFormat();
const Format& csvFormat();
const Format& jsonFormat();

// Null for a name that is none.
const Format* formatNamed(std::wstring_view name);
// "text, csv or json"; those only for which the question holds.
std::wstring formatNames(bool (Format::*question)() const = nullptr);

}  // namespace report
