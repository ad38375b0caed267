// Drives and shares that do not answer: asking one takes seconds.
#pragma once

#include <string>

#include "win32/base/platform.h"

namespace win32 {

// What looking at a drive's or a share's root fails with, 0 when it is there. Replaced by the tests.
extern DWORD (*errorOfRoot)(const std::wstring& root);

// True for the errors of a drive without medium and of a network that cannot be reached. A drive that does
// not exist and a share that refuses answer at once and are none of them.
bool isOutOfReach(DWORD error);

}  // namespace win32
