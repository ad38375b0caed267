#include "startup/ucServices.h"

#include "files/windows_folders.h"
#include "helmkit/client/registry_access.h"
#include "helmkit/client/system_services.h"
#include "startup/protected_libraries.h"
#include "win32/base/text.h"
#include "win32/files/indirect_string.h"

namespace startup {

namespace {

using helmkit::HKLM;

const PageDesign design = {
    .typeName = L"ucServices",
    .heading = L"Detected Services and Device Drivers (standard services and drivers are skipped):",
    .columns = {L"Program Name", L"Manufacturer"},
    .note = L"Related File:",
    .button = L"&Properties",
    .hasContextMenuKey = false,
    .hidesSeparator = false};

const std::wstring servicesKey = L"SYSTEM\\CurrentControlSet\\Services";

// Kernel drivers are often configured by the object manager's name of the Windows folder.
std::wstring normalised(const std::wstring& imagePath) {
    const std::wstring systemRoot = L"\\systemroot\\";
    if (win32::lowered(imagePath.substr(0, systemRoot.size())) != systemRoot) return imagePath;
    return L"%SystemRoot%" + imagePath.substr(systemRoot.size() - 1);
}

}  // namespace

ucServices::ucServices(HWND parent) : StartupListControl(parent, L"ucServices1", design) {}

void ucServices::EnumItems(StartupItemList& list) {
    trapped(L".EnumItems", [&] {
        std::wstring winDir;
        files::GetWindowsFolders(winDir, sysDir_);
        FillItemInfo(helmkit::RegistryAccess().EnumSubkeys(HKLM, servicesKey), list);
    });
}

void ucServices::FillItemInfo(const std::vector<std::wstring>& services, StartupItemList& list) {
    helmkit::RegistryAccess registry;
    for (const std::wstring& service : services) {
        trapped(L".FillItemInfo", [&] { fillService(registry, service, list); });
    }
}

void ucServices::fillService(helmkit::RegistryAccess& registry, const std::wstring& service,
                             StartupItemList& list) {
    const std::wstring key = servicesKey + L"\\" + service;
    const std::wstring imagePath = registry.ReadValue(HKLM, key, L"ImagePath").data;
    if (imagePath.empty() || IsKnownGoodImagePath(imagePath)) return;
    const std::wstring displayName = win32::displayedText(registry.ReadValue(HKLM, key, L"DisplayName").data);
    const std::wstring file =
        fileDescriptions().resolve(helmkit::systemServices().ExpandEnvironment(normalised(imagePath)));
    const FileDescription& description = fileDescriptions().of(file);
    StartupItem item = list.AddRecord();
    item.SetName(service);
    item.SetField(field::Name, displayName.empty() ? description.nameOr(file) : displayName);
    item.SetField(field::Dll, file);
    item.SetField(field::Manufacturer, description.company);
    bool isProtected = isProtectedLibrary(file, description.company, sysDir_);
    item.SetField(field::GridIcon, isProtected ? icon::protectedEntry : icon::ordinary);
}

void ucServices::deleteRow(int row) {
    if (!itemOf(row).text(field::Dll).empty()) showProperties(row);
}

}  // namespace startup
