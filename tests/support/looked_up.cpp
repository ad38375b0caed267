#include "tests/support/looked_up.h"

#include <map>

#include "tests/support/replaced_import.h"

namespace {

struct Lead {
    void* thunk;
    void** original;
};

std::map<std::string, Lead>& leads() {
    static std::map<std::string, Lead> byName;
    return byName;
}

std::set<std::string>& names() {
    static std::set<std::string> found;
    return found;
}

bool lacksNewer = false;
const std::set<std::string> newer = {"GetDpiForMonitor",
                                     "GetDpiForWindow",
                                     "GetFinalPathNameByHandleW",
                                     "GetSystemDefaultUILanguage",
                                     "GetSystemWindowsDirectoryA",
                                     "GetUserDefaultUILanguage",
                                     "IsThemeActive",
                                     "IsWow64Process",
                                     "LCIDToLocaleName",
                                     "MoveFileExW",
                                     "NtDeleteKey",
                                     "NtQueryKey",
                                     "ReplaceFileW",
                                     "RtlNtStatusToDosError",
                                     "SetDefaultDllDirectories",
                                     "SetDllDirectoryW",
                                     "Wow64DisableWow64FsRedirection",
                                     "Wow64RevertWow64FsRedirection"};

FARPROC(WINAPI* realGetProcAddress)(HMODULE, const char*);

FARPROC WINAPI lookUp(HMODULE module, const char* name) {
    if (lacksNewer && !IS_INTRESOURCE(name) && newer.count(name)) {
        ::SetLastError(ERROR_PROC_NOT_FOUND);
        return nullptr;
    }
    FARPROC found = realGetProcAddress(module, name);
    if (!found || IS_INTRESOURCE(name)) return found;
    names().insert(name);
    const auto lead = leads().find(name);
    if (lead == leads().end()) return found;
    *lead->second.original = reinterpret_cast<void*>(found);
    return reinterpret_cast<FARPROC>(lead->second.thunk);
}

// Before anything of the program is called.
[[maybe_unused]] const bool isLed = [] {
    void** const place = ReplacedImport::placeOf("GetProcAddress");
    realGetProcAddress = reinterpret_cast<FARPROC(WINAPI*)(HMODULE, const char*)>(*place);
    ReplacedImport::put(place, reinterpret_cast<void*>(&lookUp));
    return true;
}();

}  // namespace

void looked_up::lead(const char* name, void* thunk, void** original) {
    leads()[name] = {thunk, original};
}

void looked_up::findAsWindows98() {
    lacksNewer = true;
}

const std::set<std::string>& looked_up::found() {
    return names();
}
