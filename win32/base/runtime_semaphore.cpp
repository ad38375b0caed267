#include "win32/base/platform.h"

// The compiler's runtime makes the semaphore of a lock, always a nameless one, with CreateSemaphoreW. On
// Windows 95, 98 and Me that function fails, and a lock without a semaphore holds nobody back as soon as two
// threads want it. The import that the runtime would take from kernel32 is defined here instead and leads to
// the ANSI function, which every Windows has.
#ifndef _WIN64

namespace {

HANDLE WINAPI createSemaphore(SECURITY_ATTRIBUTES* attributes, LONG initial, LONG most,
                              const wchar_t* /*name*/) {
    return ::CreateSemaphoreA(attributes, initial, most, nullptr);
}

}  // namespace

extern "C" {
// What the linker would otherwise find in the import library of kernel32.
extern decltype(&createSemaphore) const importedCreateSemaphoreW __asm__("__imp__CreateSemaphoreW@16");
decltype(&createSemaphore) const importedCreateSemaphoreW = createSemaphore;
}

#endif
