#include "bench/places.h"

namespace bench {

std::vector<Value> placeValues(const std::wstring& folder) {
    const std::wstring windows = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Windows",
                       winlogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon",
                       runOnceEx = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx",
                       shellFolders =
                           L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
    return {
        {HKEY_CURRENT_USER, windows, L"run", L"notes.exe"},
        {HKEY_LOCAL_MACHINE, windows, L"run", L"clock.exe"},
        {HKEY_CURRENT_USER, windows, L"load", L"mixer.exe"},
        {HKEY_LOCAL_MACHINE, windows, L"load", L"tray.exe"},
        {HKEY_LOCAL_MACHINE, winlogon, L"shell", L"explorer.exe, another.exe"},
        {HKEY_LOCAL_MACHINE, winlogon, L"userinit", L"another.exe"},
        {HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\Session Manager", L"BootExecute", L"boot"},
        {HKEY_CURRENT_USER, L"Control Panel\\Desktop", L"SCRNSAVE.EXE", L"stars.scr"},
        {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Command Processor", L"AutoRun", L"greet.cmd"},
        {HKEY_LOCAL_MACHINE, winlogon, L"VmApplet", L"applet"},
        {HKEY_LOCAL_MACHINE, winlogon, L"UIHost", L"another.exe"},
        {HKEY_LOCAL_MACHINE, runOnceEx + L"\\001", L"1", L"setup.exe"},
        {HKEY_CURRENT_USER, runOnceEx + L"\\001", L"1", L"setup.exe"},
        {HKEY_LOCAL_MACHINE, shellFolders, L"Common Startup", folder},
        {HKEY_CURRENT_USER, shellFolders, L"Startup", folder},
    };
}

std::string winIni(size_t bytes) {
    std::string text = "; for 16-bit app support\r\n[fonts]\r\n[extensions]\r\n";
    for (int i = 0; text.size() < bytes; ++i) {
        if (i % 40 == 0) text += "\r\n[Program " + std::to_string(i / 40) + "]\r\n";
        text += "Setting" + std::to_string(i) + "=C:\\Program Files\\Example\\file" + std::to_string(i) +
                ".dat\r\n";
    }
    return text + "[windows]\r\nload=loaded.exe\r\nrun=running.exe\r\n";
}

std::string systemIni() {
    return "[386Enh]\r\nwoafont=dosapp.fon\r\n[boot]\r\nshell=another.exe\r\n[drivers]\r\nwave=mmdrv.dll\r\n";
}

}  // namespace bench
