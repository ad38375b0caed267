#include "win32/system/process.h"

#include "win32/base/platform.h"
#include "win32/system/system.h"

namespace win32 {

void failWithoutBoxes() {
    ::SetErrorMode(::SetErrorMode(0) | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
}

void useSystemLibrariesOnly() {
    using SetDefaultDllDirectories = BOOL(WINAPI*)(DWORD);
    using SetDllDirectory = BOOL(WINAPI*)(const wchar_t*);
    const auto setDefaultDllDirectories =
        systemProcedure<SetDefaultDllDirectories>(L"kernel32.dll", "SetDefaultDllDirectories");
    const DWORD searchSystem32 = 0x0800;  // LOAD_LIBRARY_SEARCH_SYSTEM32
    if (setDefaultDllDirectories && setDefaultDllDirectories(searchSystem32)) return;
    const auto setDllDirectory = systemProcedure<SetDllDirectory>(L"kernel32.dll", "SetDllDirectoryW");
    if (setDllDirectory) setDllDirectory(L"");
}

}  // namespace win32
