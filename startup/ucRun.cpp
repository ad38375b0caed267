#include "startup/ucRun.h"

#include "files/checksum.h"
#include "files/windows_folders.h"
#include "helmkit/client/registry_access.h"
#include "helmkit/client/system_services.h"
#include "resources/messages.h"
#include "resources/resource_ids.h"
#include "win32/system/resources.h"

namespace startup {

namespace {

using helmkit::HKCU;
using helmkit::HKLM;

const PageDesign design = {.typeName = L"ucRun",
                           .heading = L"Detected Startup Programs:",
                           .columns = {L"Program Name", L"Manufacturer"},
                           .note = L"Related File:",
                           .button = L"&Delete From Startup"};

struct Place {
    LONG hive;
    const wchar_t* keyPath;
};

const Place ordinaryPlaces[] = {
    {HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run"},
    {HKCU, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run"},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServices"},
    {HKCU, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServices"},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce"},
    {HKCU, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce"},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce\\Setup"},
    {HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServicesOnce"},
    {HKCU, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServicesOnce"},
};

const LONG policyHives[] = {HKLM, HKCU};
const std::wstring policyKey = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\policies\\Explorer\\Run";

}  // namespace

ucRun::ucRun(HWND parent) : StartupListControl(parent, L"ucRun1", design) {}

void ucRun::EnumItems(StartupItemList& list) {
    trapped(L".EnumItems", [&] {
        files::GetWindowsFolders(winDir_, sysDir_);
        helmkit::RegistryAccess registry;
        for (const Place& place : ordinaryPlaces) {
            trapped(L".EnumItems", [&] {
                FillItemInfo(registry.EnumValues(place.hive, place.keyPath), list, place.hive, place.keyPath);
            });
        }
        for (LONG hive : policyHives) fillPolicyItemInfo(list, hive);
    });
}

void ucRun::FillItemInfo(const std::vector<std::wstring>& values, StartupItemList& list, LONG hive,
                         const std::wstring& keyPath) {
    helmkit::RegistryAccess registry;
    for (const std::wstring& valueName : values) {
        trapped(L".FillItemInfo", [&] {
            auto value = registry.ReadValue(hive, keyPath, valueName);
            // What is neither a string nor a list of strings counts as an empty command.
            std::wstring command = value.status == ERROR_SUCCESS ? value.data : std::wstring();
            std::wstring file = fileDescriptions().resolveValue(registry, hive, keyPath, valueName, command);
            const FileDescription& description = fileDescriptions().of(file);
            // The fallback is the value's name whatever the file's other strings say.
            addItem(list, hive, keyPath, valueName,
                    description.description ? *description.description : valueName, file,
                    description.company);
        });
    }
}

void ucRun::fillPolicyItemInfo(StartupItemList& list, LONG hive) {
    helmkit::RegistryAccess registry;
    for (const std::wstring& valueName : registry.EnumValues(hive, policyKey)) {
        auto value = registry.ReadValue(hive, policyKey, valueName);
        if (value.status != ERROR_SUCCESS || value.data.empty()) {
            addItem(list, hive, policyKey, valueName, win32::loadString(STRING_NOT_SPECIFIED), {}, {});
            continue;
        }
        std::wstring file = fileDescriptions().resolveValue(registry, hive, policyKey, valueName, value.data);
        const FileDescription& description = fileDescriptions().of(file);
        addItem(list, hive, policyKey, valueName, description.nameOr(value.data), file, description.company);
    }
}

void ucRun::addItem(StartupItemList& list, LONG hive, const std::wstring& keyPath,
                    const std::wstring& valueName, const std::wstring& name, const std::wstring& file,
                    const std::wstring& manufacturer) const {
    StartupItem item = list.AddRecord();
    item.SetName(valueName);
    item.SetField(field::Name, name);
    item.SetField(field::Dll, file);
    item.SetField(field::Manufacturer, manufacturer);
    item.SetField(field::Key, hive);
    item.SetField(field::Hive, keyPath);
    item.SetField(field::ValueName, valueName);
    bool isProtected = isProtectedProgram(file, manufacturer, winDir_, sysDir_);
    item.SetField(field::Icon, isProtected ? icon::protectedEntry : icon::ordinary);
}

void ucRun::deleteRow(int row) {
    refuseOrDelete(row, STRING_REFUSE_RUN);
}

StartupListControl::Deletion ucRun::deleteItem(const StartupItem& item, const std::wstring&) {
    const LONG hive = item.number(field::Key);
    const std::wstring keyPath = item.text(field::Hive), file = item.text(field::Dll);
    int32_t size = 0;
    int32_t checksum = files::FileChecksum(file, size);
    helmkit::RegistryAccess registry;
    LONG status = registry.DeleteValue(hive, keyPath, item.text(field::ValueName));
    std::wstring line = helmkit::systemServices().FormatMessage(
        L"Deleting common(%1, '%2', '%3', %4, %5)",
        {hive == HKLM ? L"HKEY_LOCAL_MACHINE" : L"HKEY_CURRENT_USER", keyPath, file, std::to_wstring(size),
         std::to_wstring(checksum)});
    return {status == ERROR_SUCCESS, line};
}

}  // namespace startup
