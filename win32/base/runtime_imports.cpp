#include "win32/base/platform.h"

// The compiler's runtime imports functions that Windows 95, 98 and Me have not got or only pretend to have.
// What it would take from kernel32 is defined here instead.
#ifndef _WIN64

namespace {

// GCC 12 makes the semaphore of a lock, always a nameless one, with CreateSemaphoreW. It fails there, and a
// lock without a semaphore holds nobody back as soon as two threads want it. Every Windows has the ANSI
// function.
HANDLE WINAPI createSemaphore(SECURITY_ATTRIBUTES* attributes, LONG initial, LONG most,
                              const wchar_t* /*name*/) {
    return ::CreateSemaphoreA(attributes, initial, most, nullptr);
}

// The locks of GCC 14 come with two functions that nobody calls. One compares threads with GetThreadId, whose
// import alone would keep the program from starting before Windows Server 2003. The other tries a lock with
// TryEnterCriticalSection, which only exists on Windows 98. Each answers as if it had failed.
DWORD WINAPI threadId(HANDLE /*thread*/) {
    return 0;
}
BOOL WINAPI tryEnterCriticalSection(CRITICAL_SECTION* /*section*/) {
    return FALSE;
}

}  // namespace

extern "C" {
// What the linker would otherwise find in the import library of kernel32.
extern decltype(&createSemaphore) const importedCreateSemaphoreW __asm__("__imp__CreateSemaphoreW@16");
decltype(&createSemaphore) const importedCreateSemaphoreW = createSemaphore;
extern decltype(&threadId) const importedGetThreadId __asm__("__imp__GetThreadId@4");
decltype(&threadId) const importedGetThreadId = threadId;
extern decltype(&tryEnterCriticalSection) const importedTryEnter __asm__("__imp__TryEnterCriticalSection@4");
decltype(&tryEnterCriticalSection) const importedTryEnter = tryEnterCriticalSection;
}

#endif
