// The clock in universal time.
#pragma once

#include "win32/base/platform.h"

namespace win32 {

// The moment that a local time of today stands for.
FILETIME universalTime(const SYSTEMTIME& localMoment);

}  // namespace win32
