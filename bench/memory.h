// The memory of rows, measured in a process of its own.
#pragma once

#include "win32/base/platform.h"

namespace bench {

// The greatest private memory while a list is filled with `count` rows, less that of the window while it was
// still empty, in bytes. For a process that does nothing else.
DWORD memoryOfOurRows(int count);
DWORD memoryOfFloorRows(int count);

}  // namespace bench
