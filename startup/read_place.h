// What stands at a special place now.
#pragma once

#include <string>

#include "files/windows_folders.h"
#include "helmkit/client/registry_access.h"
#include "startup/ini_files.h"
#include "startup/special_places.h"

namespace startup {

struct PlaceState {
    bool listed = false;
    Icon icon = Icon::ordinary;
    std::wstring value;
};

PlaceState readPlace(helmkit::RegistryAccess& registry, IniFiles& iniFiles, const SpecialPlace& place,
                     const files::WindowsFolders& folders);

// The folder of a place of that kind as the registry has it, environment references included; empty when it
// is configured nowhere.
std::wstring startupFolder(helmkit::RegistryAccess& registry, const SpecialPlace& place);

}  // namespace startup
