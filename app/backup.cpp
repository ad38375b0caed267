#include "app/backup.h"

#include "app/trap.h"
#include "files/registry_file.h"
#include "helmkit/client/file_services.h"
#include "helmkit/client/registry_access.h"
#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"
#include "resources/messages.h"
#include "win32/files/files.h"
#include "win32/system/date_time.h"
#include "win32/system/desktop.h"

namespace app {

namespace {

using helmkit::HKCU;
using helmkit::HKLM;

// What is exported, in this order, in exactly these letters. An operation without a value name exports the
// key with everything below it.
const struct Export {
    LONG hive;
    const wchar_t* keyPath;
    const wchar_t* valueName;
} exports[] = {
    {HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run", nullptr},
    {HKCU, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run", nullptr},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServices", nullptr},
    {HKCU, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServices", nullptr},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce", nullptr},
    {HKCU, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce", nullptr},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServicesOnce", nullptr},
    {HKCU, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServicesOnce", nullptr},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\policies\\Explorer\\Run", nullptr},
    {HKCU, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\policies\\Explorer\\Run", nullptr},
    {HKLM, L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify", nullptr},
    {HKCU, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Windows", L"run"},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Windows", L"run"},
    {HKCU, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Windows", L"load"},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Windows", L"load"},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon", L"shell"},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon", L"userinit"},
    {HKLM, L"SYSTEM\\CurrentControlSet\\Control\\Session Manager", L"BootExecute"},
    {HKCU, L"Control Panel\\Desktop", L"SCRNSAVE.EXE"},
    {HKLM, L"SOFTWARE\\Microsoft\\Command Processor", L"AutoRun"},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon", L"VmApplet"},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon", L"UIHost"},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx", nullptr},
    {HKCU, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx", nullptr},
};

files::ExportTexts exportTexts() {
    helmkit::RegistryAccess registry;
    files::ExportTexts texts;
    for (const Export& row : exports) {
        texts.push_back(row.valueName ? registry.ExportValue(row.hive, row.keyPath, row.valueName)
                                      : registry.ExportKey(row.hive, row.keyPath));
    }
    return texts;
}

}  // namespace

void writeBackup(const helmkit::Logger& logger, const std::wstring& programFolder) {
    trapped(logger, L".BackupRegistry", [&] {
        const std::wstring folder = programFolder + L"\\Backup";
        helmkit::fileServices().CreateFolder(folder);
        // A link in its place could lead the file anywhere.
        win32::createFolder(folder, win32::Links::refused);
        const std::wstring file = helmkit::systemServices().FormatMessage(
            L"%1\\Backup %2.reg", {folder, win32::fileNameDateTime(win32::desktop().localTime())});
        for (const std::wstring& omission : files::writeRegistryFile(file, exportTexts())) {
            logger.WriteLog(0, omission, helmkit::caughtError, source(L".BackupRegistry"));
        }
    });
}

// The message says so after a failed backup too, on purpose; the failure is in the log.
void mnuBackup_Click(HWND window, const helmkit::Logger& logger, const std::wstring& programFolder) {
    trapped(logger, L".mnuBackup_Click", [&] {
        writeBackup(logger, programFolder);
        resources::showMessage(window, STRING_BACKUP_COMPLETE, resources::informationBox);
    });
}

void mnuRestore_Click(HWND window, const helmkit::Logger& logger, const std::wstring& programFolder) {
    trapped(logger, L".mnuRestore_Click", [&] {
        resources::showMessage(window, STRING_RESTORE, resources::informationBox);
        win32::desktop().openFolder(window, programFolder + L"\\Backup\\");
    });
}

}  // namespace app
