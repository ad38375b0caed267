// What the imitated libraries share: a record of every call that Windows 98 would have failed.
#pragma once

#include <windows.h>

#include <commctrl.h>

// A function that stands in for the system's own: the library exports it under the name after the prefix.
#define IMITATED(result, name) extern "C" result WINAPI imitated_##name

extern "C" {
// Writes the name into C:\windows98.log, where the tests look, and sets `error`.
void recordFailure(const char* name, DWORD error);
// What a function that only exists does: it fails with ERROR_CALL_NOT_IMPLEMENTED.
void recordMissing(const char* name);
}
