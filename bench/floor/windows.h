// Windows' headers for the floors, which call its wide functions directly and none of the program's own code.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <commctrl.h>

namespace bench::floor {

// The keys of the whole system, in a 32-bit program too.
const REGSAM reading = KEY_READ | 0x0100;  // KEY_WOW64_64KEY

}  // namespace bench::floor
