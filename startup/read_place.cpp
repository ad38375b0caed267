#include "helmkit/client/registry_access.h"
#include "helmkit/client/system_services.h"
#include "startup/StartupItem.h"
#include "startup/special_places.h"
#include "win32/base/path.h"
#include "win32/base/text.h"
#include "win32/files/folders.h"

namespace startup {

namespace {

const std::wstring several = L"One or more startups";
const std::wstring userShellFoldersKey =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";

// The icon of a value that stands at a place.
std::wstring iconOf(const SpecialPlace& place, const std::wstring& value) {
    bool isDefault = place.hasDefault && win32::lowered(value) == place.defaultValue;
    return isDefault ? icon::protectedEntry : place.ordinaryIcon;
}

PlaceState readRegistryValue(helmkit::RegistryAccess& registry, const SpecialPlace& place) {
    std::wstring value = registry.ReadValue(place.hive, place.location, place.name).data;
    if (value.empty()) return {};
    return {true, iconOf(place, value), value};
}

// Lines count in whatever section they stand. A place with a default ("shell=") is listed even for an empty
// line; its first changed line decides, else its last. One without is listed for its first line with a value.
PlaceState readIniLine(IniFiles& iniFiles, const SpecialPlace& place, const std::wstring& winDir) {
    PlaceState state;
    for (const IniLine& line : iniFiles.startupLinesOf(winDir + place.location)) {
        if (line.key != place.name) continue;
        if (line.rest.empty() && !place.hasDefault) continue;
        std::wstring value = win32::fromAnsi(win32::textAsBytes(line.rest));
        state = {true, iconOf(place, value), value};
        if (state.icon == icon::exclamation) break;
    }
    return state;
}

PlaceState readRunOnceEx(helmkit::RegistryAccess& registry, const SpecialPlace& place) {
    if (registry.EnumSubkeys(place.hive, place.location).empty()) return {};
    return {true, icon::exclamation, several};
}

PlaceState readStartupFolder(helmkit::RegistryAccess& registry, const SpecialPlace& place) {
    std::wstring folder = startupFolder(registry, place);
    // Nothing is listed for a folder that is configured nowhere, although it has an icon and a value: kept
    // so.
    if (folder.empty()) return {false, icon::ordinary, L"Invalid registry value"};
    folder = win32::withBackslash(helmkit::systemServices().ExpandEnvironment(folder));
    if (!win32::holdsNormalFile(folder)) return {};
    return {true, icon::ordinary, several};
}

}  // namespace

std::wstring startupFolder(helmkit::RegistryAccess& registry, const SpecialPlace& place) {
    std::wstring folder = registry.ReadValue(place.hive, place.location, place.name).data;
    return folder.empty() ? registry.ReadValue(place.hive, userShellFoldersKey, place.name).data : folder;
}

PlaceState readPlace(helmkit::RegistryAccess& registry, IniFiles& iniFiles, const SpecialPlace& place,
                     const std::wstring& winDir) {
    switch (place.kind) {
        case PlaceKind::registryValue:
            return readRegistryValue(registry, place);
        case PlaceKind::iniLine:
            return readIniLine(iniFiles, place, winDir);
        case PlaceKind::runOnceEx:
            return readRunOnceEx(registry, place);
        case PlaceKind::startupFolder:
            return readStartupFolder(registry, place);
    }
    return {};
}

}  // namespace startup
