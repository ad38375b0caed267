// The special startup places of the custom page: where each keeps its value, what Windows expects there and
// how that is put back.
#pragma once

#include <string>
#include <vector>

#include "helmkit/client/registry_access.h"
#include "startup/ini_files.h"

namespace startup {

enum class PlaceKind { registryValue, iniLine, runOnceEx, startupFolder };

struct SpecialPlace {
    PlaceKind kind;
    LONG hive;              // of registry places and folders
    std::wstring location;  // key path, or the ini file's name
    std::wstring name;      // value name, or the line's key with its "="
    bool hasDefault;
    std::wstring defaultValue;   // lower-cased values are compared with it
    std::wstring restoredValue;  // what a restore writes
    std::wstring ordinaryIcon;   // of a value that is not the default
    const wchar_t* description;  // the row's text
};

// What stands at a place now.
struct PlaceState {
    bool listed = false;
    std::wstring icon;
    std::wstring value;
};

const int firstPlace = 1;

// The places are counted from 1 to 18. The folders are lower-cased and end in a backslash.
std::vector<SpecialPlace> specialPlaces(const std::wstring& sysDir);

PlaceState readPlace(helmkit::RegistryAccess& registry, IniFiles& iniFiles, const SpecialPlace& place,
                     const std::wstring& winDir);

// Puts the default back at one of the places 1 to 16; throws when Windows refuses.
void restorePlace(helmkit::RegistryAccess& registry, const SpecialPlace& place, const std::wstring& winDir);

// The folder of one of the places 17 and 18 as the registry has it, environment references included; empty
// when it is configured nowhere.
std::wstring startupFolder(helmkit::RegistryAccess& registry, const SpecialPlace& place);

}  // namespace startup
