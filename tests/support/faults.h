// Windows calls that fail: registry, files, memory and objects, as a module asks for them through its import
// table.
#pragma once

#include <cstddef>

#include "win32/base/platform.h"

// What each failing call fails with.
inline constexpr DWORD faultErrors[] = {ERROR_ACCESS_DENIED, ERROR_NOT_ENOUGH_MEMORY, ERROR_SHARING_VIOLATION,
                                        ERROR_DISK_FULL};

// Puts the functions that can fail in the place of a module's imports, and of what it looks up at run time.
// As long as no fault is armed they are what they stand for. To be done before the module looks anything up.
void makeFailing(HMODULE module);

// Puts a function of the test's own in the place of one of Windows', which `real` becomes, in the modules
// that are made failing afterwards.
void standIn(const char* name, void* instead, void** real);

// While it lives, the calls are counted, and the one of that number fails, once; 0 lets all pass.
class Fault {
  public:
    Fault(size_t number, DWORD error);
    ~Fault();
    Fault(const Fault&) = delete;
    Fault& operator=(const Fault&) = delete;

    static size_t calls();
    // The function that failed; null when there were not that many calls.
    static const char* failed();
};
