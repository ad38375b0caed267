// Moments as ISO 8601 writes them. Calls nothing of Windows.
#pragma once

#include <cstdint>
#include <string>

namespace report {

// "2026-11-21T15:50:16Z" for seconds since 1970-01-01 00:00 UTC.
std::wstring isoTime(int64_t unixTime);

}  // namespace report
