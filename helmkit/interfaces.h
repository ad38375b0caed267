// The generated interfaces. The platform header comes first: it takes away the macros that would rename some
// of their operations (FormatMessage, GetFileVersionInfo, GetTempFileName).
#pragma once

#include "win32/platform.h"

#include "helmkit.h"
