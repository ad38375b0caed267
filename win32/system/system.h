// What the system says of itself: folders, environment, version, and functions that only newer Windows has.
#pragma once

#include <string>

#include "win32/base/platform.h"

namespace win32 {

// A function that not every supported Windows has, null where it is missing. A library that is not loaded yet
// is taken from the system folder only, so that no file of that name beside the program is run, and stays.
void* systemAddress(const wchar_t* library, const char* name);

template <class Function>
Function systemProcedure(const wchar_t* library, const char* name) {
    return reinterpret_cast<Function>(systemAddress(library, name));
}

// True in a 32-bit program on 64-bit Windows, which gets a redirected registry and file system.
bool isRedirected();

// With each reference %name% to a set variable replaced by its value, which may be empty; others stay. Of any
// length, where the function of Windows stops at 32767 characters.
std::wstring expandEnvironment(const std::wstring& text);

// Without a backslash at the end, except for the root of a drive. The Windows folder is the system's own also
// on a terminal server, where GetWindowsDirectory may tell one of the user's (GetSystemWindowsDirectory,
// Windows 2000 on).
std::wstring windowsFolder();
std::wstring systemFolder();

// With a backslash at the end.
std::wstring tempFolder();

// The module that this code is linked into: a DLL has its own.
HMODULE thisModule();
// The full path of a module's file; null is the program's own.
std::wstring modulePath(HMODULE module);
// Its folder, without a backslash at the end.
std::wstring moduleFolder(HMODULE module);

struct OsVersion {
    DWORD major, minor, build;
    DWORD platform;            // 1 for Windows 95, 98 and Me, 2 for the NT family
    std::wstring version;      // "5.1.2600"
    std::wstring servicePack;  // "Service Pack 3"; " A" on Windows 98 SE; may be empty
};

// Major, minor and family come from the desktop's GetVersion, build and service pack from GetVersionEx.
OsVersion osVersion();

}  // namespace win32
