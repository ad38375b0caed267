// The special startup places of the custom page: where each keeps its value, what Windows expects there and
// what a restore writes.
#pragma once

#include <span>
#include <string>

#include "startup/StartupItem.h"

namespace startup {

enum class PlaceKind { registryValue, iniLine, runOnceEx, startupFolder };

struct SpecialPlace {
    PlaceKind kind;
    LONG hive = 0;              // of registry places and folders
    const wchar_t* location;    // key path, or the ini file's name
    const wchar_t* name = L"";  // value name, or the line's key with its "="
    const wchar_t* expected =
        nullptr;  // Windows' default, compared without letter case; null where there is none
    const wchar_t* restored = L"";          // what a restore writes
    bool isInSystemFolder = false;          // the system folder stands before both
    Icon ordinaryIcon = Icon::exclamation;  // of a value that is not the default
    const wchar_t* description;             // the row's text

    bool isDefault(const std::wstring& value, const std::wstring& sysDir) const;
    std::wstring restoredValue(const std::wstring& sysDir) const;
};

// All eighteen in their order.
std::span<const SpecialPlace> specialPlaces();
// By number, the first is 1.
const SpecialPlace& specialPlace(LONG number);

}  // namespace startup
