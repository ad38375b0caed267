#include "startup/ucServices.h"

#include "helmkit/client/registry_access.h"
#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"
#include "startup/enumeration.h"
#include "startup/known_good_image_paths.h"
#include "startup/protected_libraries.h"
#include "startup/registry_places.h"
#include "win32/base/ascii.h"
#include "win32/files/indirect_string.h"

namespace startup {

namespace {

using helmkit::HKLM;

const CategoryDesign ownDesign = {
    .typeName = L"ucServices",
    .heading = L"Detected Services and Device Drivers (standard services and drivers are skipped):",
    .columns = {L"Program Name", L"Manufacturer"},
    .note = L"Related File:",
    .button = L"&Properties",
    .deletes = false,
    .hasContextMenuKey = false,
    .hidesSeparator = false};

const std::wstring servicesKey = servicesKeyPath;

// Kernel drivers are often configured by the object manager's name of the Windows folder.
std::wstring normalised(const std::wstring& imagePath) {
    const std::wstring systemRoot = L"\\systemroot\\";
    if (!win32::beginsWithLowered(imagePath, systemRoot)) return imagePath;
    return L"%SystemRoot%" + imagePath.substr(systemRoot.size() - 1);
}

void addService(Enumeration& run, const std::wstring& service, ucServices::Standard standard) {
    const std::wstring key = servicesKey + L"\\" + service;
    const std::wstring imagePath = run.readString(HKLM, key, L"ImagePath");
    if (imagePath.empty()) return;
    if (standard == ucServices::Standard::skipped && IsKnownGoodImagePath(imagePath)) return;
    const std::wstring displayName = win32::displayedText(run.readString(HKLM, key, L"DisplayName"));
    const std::wstring file =
        run.commands.resolve(helmkit::systemServices().ExpandEnvironment(normalised(imagePath)));
    const FileDescription& description = run.descriptions.of(file);
    const bool isProtected = isProtectedLibrary(file, description.company, run.folders.sysDir);
    run.list.add({.entryName = service,
                  .name = displayName.empty() ? description.nameOr(file) : displayName,
                  .file = file,
                  .manufacturer = description.company,
                  .icon = isProtected ? Icon::protectedEntry : Icon::ordinary});
}

}  // namespace

ucServices::ucServices(Standard standard) : Category(ownDesign), standard_(standard) {}

void ucServices::enumerate(Enumeration& run) const {
    for (const std::wstring& service : run.registry.EnumSubkeys(HKLM, servicesKey)) {
        run.entry([&] { addService(run, service, standard_); });
    }
}

}  // namespace startup
