#include "startup/special_places.h"

#include "helmkit/client/registry_access.h"
#include "win32/base/text.h"

namespace startup {

namespace {

using helmkit::HKCU;
using helmkit::HKLM;

const wchar_t windowsKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Windows";
const wchar_t winlogonKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
const wchar_t runOnceExKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx";
const wchar_t shellFoldersKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
const wchar_t vmApplet[] = L"rundll32 shell32,Control_RunDLL \"sysdm.cpl\"";

const SpecialPlace places[] = {
    {.kind = PlaceKind::registryValue,
     .hive = HKCU,
     .location = windowsKey,
     .name = L"run",
     .description = L"\"run=\" parameter translated to registry for the user who is currently logged on"},
    {.kind = PlaceKind::registryValue,
     .hive = HKLM,
     .location = windowsKey,
     .name = L"run",
     .description = L"\"run=\" parameter translated to registry particular to the computer (for any user)"},
    {.kind = PlaceKind::registryValue,
     .hive = HKCU,
     .location = windowsKey,
     .name = L"load",
     .description = L"\"load=\" parameter translated to registry for the user who is currently logged on"},
    {.kind = PlaceKind::registryValue,
     .hive = HKLM,
     .location = windowsKey,
     .name = L"load",
     .description = L"\"load=\" parameter translated to registry particular to the computer (for any user)"},
    {.kind = PlaceKind::registryValue,
     .hive = HKLM,
     .location = winlogonKey,
     .name = L"shell",
     .expected = L"explorer.exe",
     .restored = L"Explorer.exe",
     .description = L"OS shell particular to the computer (for any user)"},
    {.kind = PlaceKind::registryValue,
     .hive = HKLM,
     .location = winlogonKey,
     .name = L"userinit",
     .expected = L"userinit.exe,",
     .restored = L"userinit.exe,",
     .isInSystemFolder = true,
     .description = L"Userinit for MSGina.dll"},
    {.kind = PlaceKind::registryValue,
     .hive = HKLM,
     .location = L"SYSTEM\\CurrentControlSet\\Control\\Session Manager",
     .name = L"BootExecute",
     .expected = L"autocheck autochk *",
     .restored = L"autocheck autochk *",
     .description = L"Session Manager startup programs"},
    // Any screen saver is an ordinary one. Upper case is written, lower case compared with, on purpose: every
    // spelling counts as the default.
    {.kind = PlaceKind::registryValue,
     .hive = HKCU,
     .location = L"Control Panel\\Desktop",
     .name = L"SCRNSAVE.EXE",
     .expected = L"(none)",
     .restored = L"(NONE)",
     .ordinaryIcon = Icon::ordinary,
     .description = L"Windows screen saver"},
    {.kind = PlaceKind::registryValue,
     .hive = HKLM,
     .location = L"SOFTWARE\\Microsoft\\Command Processor",
     .name = L"AutoRun",
     .description = L"Autorun for Command Processor particular to the computer (for any user)"},
    {.kind = PlaceKind::registryValue,
     .hive = HKLM,
     .location = winlogonKey,
     .name = L"VmApplet",
     .expected = vmApplet,
     .restored = vmApplet,
     .description = L"Winlogon VmApplet"},
    {.kind = PlaceKind::registryValue,
     .hive = HKLM,
     .location = winlogonKey,
     .name = L"UIHost",
     .expected = L"logonui.exe",
     .restored = L"logonui.exe",
     .description = L"Logon user interface reference"},
    {.kind = PlaceKind::iniLine,
     .location = L"win.ini",
     .name = L"load=",
     .description = L"Win.ini \"load=\" line"},
    {.kind = PlaceKind::iniLine,
     .location = L"win.ini",
     .name = L"run=",
     .description = L"Win.ini \"run=\" line"},
    {.kind = PlaceKind::iniLine,
     .location = L"system.ini",
     .name = L"shell=",
     .expected = L"explorer.exe",
     .restored = L"Explorer.exe",
     .description = L"System.ini \"shell=\" line"},
    {.kind = PlaceKind::runOnceEx,
     .hive = HKLM,
     .location = runOnceExKey,
     .description = L"RunOnceEx particular to the computer (for any user)"},
    {.kind = PlaceKind::runOnceEx,
     .hive = HKCU,
     .location = runOnceExKey,
     .description = L"RunOnceEx for the user who is currently logged on"},
    {.kind = PlaceKind::startupFolder,
     .hive = HKLM,
     .location = shellFoldersKey,
     .name = L"Common Startup",
     .ordinaryIcon = Icon::ordinary,
     .description = L"Common startup folder particular to the computer (for any user)"},
    // The user's own folder has the common one's text too, on purpose: messages and logs name both so.
    {.kind = PlaceKind::startupFolder,
     .hive = HKCU,
     .location = shellFoldersKey,
     .name = L"Startup",
     .ordinaryIcon = Icon::ordinary,
     .description = L"Common startup folder particular to the computer (for any user)"},
};

}  // namespace

bool SpecialPlace::isDefault(const std::wstring& value, const std::wstring& sysDir) const {
    if (!expected) return false;
    return win32::lowered(value) == win32::lowered((isInSystemFolder ? sysDir : std::wstring()) + expected);
}

std::wstring SpecialPlace::restoredValue(const std::wstring& sysDir) const {
    return (isInSystemFolder ? sysDir : std::wstring()) + restored;
}

std::span<const SpecialPlace> specialPlaces() {
    return places;
}

const SpecialPlace& specialPlace(LONG number) {
    return specialPlaces()[number - 1];
}

}  // namespace startup
