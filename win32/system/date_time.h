// Dates and times in the user's own form.
#pragma once

#include <string>

#include "win32/base/platform.h"

namespace win32 {

// The default short date and long time of the user's locale (GetDateFormat, GetTimeFormat).
std::wstring shortDateLongTime(const SYSTEMTIME& moment);

// "mmm dd, yyyy hh-mm-ss": abbreviated month name of the user's locale, two-digit day, four-digit year, hours
// 00 to 23.
std::wstring fileNameDateTime(const SYSTEMTIME& moment);

SYSTEMTIME secondsBefore(const SYSTEMTIME& moment, DWORD seconds);

}  // namespace win32
