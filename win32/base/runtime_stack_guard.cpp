#include <cstdint>

#include "win32/base/platform.h"

// A function with an array on its stack keeps this number between the array and the address that it returns
// to, and looks at it before it returns (-fstack-protector-strong). Whoever wrote past the array has changed
// it: the program ends there, and not at an address that came with a hostile text.
//
// The compiler's own library for this asks a cryptographic provider while each module is being loaded, where
// Windows allows no library to be loaded, and what GCC 14 brings is another one. So both are ours.
extern "C" {
uintptr_t __stack_chk_guard = 0x0A0DFF00;

[[noreturn]] void __stack_chk_fail() {
    const UINT stackBufferOverrun = 0xC0000409;
    ::TerminateProcess(::GetCurrentProcess(), stackBufferOverrun);
    for (;;) ::Sleep(INFINITE);
}
}

namespace {

// Another one in each run, from what every Windows tells without loading anything. Its first byte in memory
// is NUL, which no text that is copied too far puts there.
uintptr_t unforeseenNumber() {
    FILETIME time;
    LARGE_INTEGER counter = {};
    ::GetSystemTimeAsFileTime(&time);
    ::QueryPerformanceCounter(&counter);
    uintptr_t number = reinterpret_cast<uintptr_t>(&time);
    const DWORD parts[] = {time.dwLowDateTime, counter.LowPart, ::GetTickCount(), ::GetCurrentThreadId()};
    for (DWORD part : parts) number = number * 0x01000193 ^ part;
    return number & ~uintptr_t{0xFF};
}

// Before any other code of the module. It is in a protected function itself that the number may not change.
[[gnu::constructor, gnu::no_stack_protector]] void chooseStackGuard() {
    __stack_chk_guard = unforeseenNumber();
}

}  // namespace
