#include "startup/read_place.h"

#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"
#include "win32/base/path.h"
#include "win32/base/text.h"
#include "win32/files/folders.h"

namespace startup {

namespace {

const std::wstring several = L"One or more startups";
const std::wstring userShellFoldersKey =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";

// The state of a place that holds a value.
PlaceState holding(const SpecialPlace& place, const std::wstring& value,
                   const files::WindowsFolders& folders) {
    const bool isDefault = place.isDefault(value, folders.sysDir);
    return {true, isDefault ? Icon::protectedEntry : place.ordinaryIcon, value};
}

PlaceState readRegistryValue(helmkit::RegistryAccess& registry, const SpecialPlace& place,
                             const files::WindowsFolders& folders) {
    std::wstring value = registry.ReadValue(place.hive, place.location, place.name).data;
    if (value.empty()) return {};
    return holding(place, value, folders);
}

// Lines count in whatever section they stand. A place with a default ("shell=") is listed even for an empty
// line; its first changed line decides, else its last. One without is listed for its first line with a value.
PlaceState readIniLine(IniFiles& iniFiles, const SpecialPlace& place, const files::WindowsFolders& folders) {
    PlaceState state;
    for (const IniLine& line : iniFiles.startupLinesOf(folders.winDir + place.location)) {
        if (line.key != place.name) continue;
        if (line.rest.empty() && !place.expected) continue;
        state = holding(place, win32::fromAnsi(win32::textAsBytes(line.rest)), folders);
        if (state.icon == Icon::exclamation) break;
    }
    return state;
}

PlaceState readRunOnceEx(helmkit::RegistryAccess& registry, const SpecialPlace& place) {
    if (registry.EnumSubkeys(place.hive, place.location).empty()) return {};
    return {true, Icon::exclamation, several};
}

PlaceState readStartupFolder(helmkit::RegistryAccess& registry, const SpecialPlace& place) {
    std::wstring folder = startupFolder(registry, place);
    // Nothing is listed for a folder that is configured nowhere, although it has an icon and a value: on
    // purpose, so that whoever reads the place can tell it from an empty folder.
    if (folder.empty()) return {false, place.ordinaryIcon, L"Invalid registry value"};
    folder = win32::withBackslash(helmkit::systemServices().ExpandEnvironment(folder));
    if (!win32::holdsNormalFile(folder)) return {};
    return {true, place.ordinaryIcon, several};
}

}  // namespace

std::wstring startupFolder(helmkit::RegistryAccess& registry, const SpecialPlace& place) {
    std::wstring folder = registry.ReadValue(place.hive, place.location, place.name).data;
    return folder.empty() ? registry.ReadValue(place.hive, userShellFoldersKey, place.name).data : folder;
}

PlaceState readPlace(helmkit::RegistryAccess& registry, IniFiles& iniFiles, const SpecialPlace& place,
                     const files::WindowsFolders& folders) {
    switch (place.kind) {
        case PlaceKind::registryValue:
            return readRegistryValue(registry, place, folders);
        case PlaceKind::iniLine:
            return readIniLine(iniFiles, place, folders);
        case PlaceKind::runOnceEx:
            return readRunOnceEx(registry, place);
        case PlaceKind::startupFolder:
            return readStartupFolder(registry, place);
    }
    return {};
}

}  // namespace startup
