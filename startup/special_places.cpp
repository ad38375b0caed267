#include "startup/special_places.h"

#include "startup/StartupItem.h"
#include "win32/base/text.h"

namespace startup {

namespace {

using helmkit::HKCU;
using helmkit::HKLM;

const std::wstring windowsKey = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Windows";
const std::wstring winlogonKey = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
const std::wstring runOnceExKey = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx";
const std::wstring shellFoldersKey = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

const wchar_t runOfUser[] =
    L"\"run=\" parameter translated to registry for the user who is currently logged on";
const wchar_t runOfComputer[] =
    L"\"run=\" parameter translated to registry particular to the computer (for any user)";
const wchar_t loadOfUser[] =
    L"\"load=\" parameter translated to registry for the user who is currently logged on";
const wchar_t loadOfComputer[] =
    L"\"load=\" parameter translated to registry particular to the computer (for any user)";
// The user's own folder has the common one's text too, on purpose.
const wchar_t startupFolderText[] = L"Common startup folder particular to the computer (for any user)";

SpecialPlace withoutDefault(PlaceKind kind, LONG hive, const std::wstring& location, const std::wstring& name,
                            const wchar_t* description) {
    return {kind, hive, location, name, false, {}, {}, icon::exclamation, description};
}

SpecialPlace registryPlace(LONG hive, const std::wstring& key, const std::wstring& name,
                           const std::wstring& expected, const std::wstring& restored,
                           const wchar_t* description) {
    return {PlaceKind::registryValue, hive,       key, name, true, win32::lowered(expected), restored,
            icon::exclamation,        description};
}

std::vector<SpecialPlace> registryPlaces(const std::wstring& sysDir) {
    const auto value = PlaceKind::registryValue;
    const std::wstring userinit = sysDir + L"userinit.exe,",
                       vmApplet = L"rundll32 shell32,Control_RunDLL \"sysdm.cpl\"";
    return {
        withoutDefault(value, HKCU, windowsKey, L"run", runOfUser),
        withoutDefault(value, HKLM, windowsKey, L"run", runOfComputer),
        withoutDefault(value, HKCU, windowsKey, L"load", loadOfUser),
        withoutDefault(value, HKLM, windowsKey, L"load", loadOfComputer),
        registryPlace(HKLM, winlogonKey, L"shell", L"explorer.exe", L"Explorer.exe",
                      L"OS shell particular to the computer (for any user)"),
        registryPlace(HKLM, winlogonKey, L"userinit", userinit, userinit, L"Userinit for MSGina.dll"),
        registryPlace(HKLM, L"SYSTEM\\CurrentControlSet\\Control\\Session Manager", L"BootExecute",
                      L"autocheck autochk *", L"autocheck autochk *", L"Session Manager startup programs"),
        // Upper case is written, lower case compared with, on purpose.
        registryPlace(HKCU, L"Control Panel\\Desktop", L"SCRNSAVE.EXE", L"(none)", L"(NONE)",
                      L"Windows screen saver"),
        withoutDefault(value, HKLM, L"SOFTWARE\\Microsoft\\Command Processor", L"AutoRun",
                       L"Autorun for Command Processor particular to the computer (for any user)"),
        registryPlace(HKLM, winlogonKey, L"VmApplet", vmApplet, vmApplet, L"Winlogon VmApplet"),
        registryPlace(HKLM, winlogonKey, L"UIHost", L"logonui.exe", L"logonui.exe",
                      L"Logon user interface reference"),
    };
}

}  // namespace

std::vector<SpecialPlace> specialPlaces(const std::wstring& sysDir) {
    std::vector<SpecialPlace> places = registryPlaces(sysDir);
    places[7].ordinaryIcon = icon::ordinary;  // any screen saver is an ordinary one
    SpecialPlace shell =
        withoutDefault(PlaceKind::iniLine, 0, L"system.ini", L"shell=", L"System.ini \"shell=\" line");
    shell.hasDefault = true;
    shell.defaultValue = L"explorer.exe";
    shell.restoredValue = L"Explorer.exe";
    places.insert(
        places.end(),
        {
            withoutDefault(PlaceKind::iniLine, 0, L"win.ini", L"load=", L"Win.ini \"load=\" line"),
            withoutDefault(PlaceKind::iniLine, 0, L"win.ini", L"run=", L"Win.ini \"run=\" line"),
            shell,
            withoutDefault(PlaceKind::runOnceEx, HKLM, runOnceExKey, {},
                           L"RunOnceEx particular to the computer (for any user)"),
            withoutDefault(PlaceKind::runOnceEx, HKCU, runOnceExKey, {},
                           L"RunOnceEx for the user who is currently logged on"),
            withoutDefault(PlaceKind::startupFolder, HKLM, shellFoldersKey, L"Common Startup",
                           startupFolderText),
            withoutDefault(PlaceKind::startupFolder, HKCU, shellFoldersKey, L"Startup", startupFolderText),
        });
    return places;
}

}  // namespace startup
