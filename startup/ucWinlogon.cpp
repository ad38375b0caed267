#include "startup/ucWinlogon.h"

#include "files/windows_folders.h"
#include "helmkit/client/registry_access.h"
#include "helmkit/client/system_services.h"
#include "resources/resource_ids.h"
#include "startup/protected_libraries.h"
#include "win32/system/resources.h"

namespace startup {

namespace {

using helmkit::HKLM;

const PageDesign design = {.typeName = L"ucWinlogon",
                           .heading = L"Detected Startup Programs:",
                           .columns = {L"Program Name", L"Manufacturer"},
                           .note = L"Related File:",
                           .button = L"&Delete From Startup"};

const std::wstring notifyKey = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify";

const wchar_t* const events[] = {L"Lock",     L"Logoff",           L"Logon",
                                 L"Shutdown", L"StartScreenSaver", L"StartShell",
                                 L"Startup",  L"StopScreenSaver",  L"Unlock"};

std::wstring packageKey(const std::wstring& subkey) {
    return notifyKey + L"\\" + subkey;
}

}  // namespace

ucWinlogon::ucWinlogon(HWND parent) : StartupListControl(parent, L"ucWinlogon1", design) {}

void ucWinlogon::EnumItems(StartupItemList& list) {
    trapped(L".EnumItems", [&] {
        std::wstring winDir;
        files::GetWindowsFolders(winDir, sysDir_);
        FillItemInfo(helmkit::RegistryAccess().EnumSubkeys(HKLM, notifyKey), list);
    });
}

void ucWinlogon::FillItemInfo(const std::vector<std::wstring>& subkeys, StartupItemList& list) {
    helmkit::RegistryAccess registry;
    for (const std::wstring& subkey : subkeys) {
        trapped(L".FillItemInfo", [&] {
            const std::wstring key = packageKey(subkey), valueName = L"DLLName";
            std::wstring dll = registry.ReadValue(HKLM, key, valueName).data;
            if (dll.empty()) return addItem(list, subkey, win32::loadString(STRING_NOT_SPECIFIED), {}, {});
            std::wstring file = fileDescriptions().resolveValue(registry, HKLM, key, valueName, dll);
            const FileDescription& description = fileDescriptions().of(file);
            addItem(list, subkey, description.nameOr(dll), file, description.company);
        });
    }
}

void ucWinlogon::addItem(StartupItemList& list, const std::wstring& subkey, const std::wstring& name,
                         const std::wstring& file, const std::wstring& manufacturer) const {
    StartupItem item = list.AddRecord();
    item.SetName(subkey);
    item.SetField(field::Name, name);
    item.SetField(field::Dll, file);
    item.SetField(field::Manufacturer, manufacturer);
    bool isProtected = isProtectedLibrary(file, manufacturer, sysDir_);
    item.SetField(field::GridIcon, isProtected ? icon::protectedEntry : icon::exclamation);
}

void ucWinlogon::deleteRow(int row) {
    refuseOrDelete(row, STRING_REFUSE_WINLOGON);
}

StartupListControl::Deletion ucWinlogon::deleteItem(const StartupItem& item, const std::wstring& rowText) {
    LONG status = helmkit::RegistryAccess().DeleteKey(HKLM, packageKey(item.Name()));
    std::wstring line = helmkit::systemServices().FormatMessage(
        L"Deleting Winlogon('%1', '%2', '%3')", {item.Name(), rowText, item.text(field::Dll)});
    return {status == ERROR_SUCCESS, line};
}

std::wstring ucWinlogon::eventsSummary(const std::wstring& subkey) {
    helmkit::RegistryAccess registry;
    std::wstring summary;
    for (const wchar_t* event : events) {
        if (registry.ValueType(HKLM, packageKey(subkey), event) >= 0) summary += std::wstring(event) + L", ";
    }
    return summary.substr(0, summary.empty() ? 0 : summary.size() - 2);
}

}  // namespace startup
