// A Windows with one entry a place, in the hives of a RegistryFixture.
#pragma once

#include <string>

#include "startup/registry_places.h"
#include "startup/special_places.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/temp_folder.h"

inline HKEY hiveOf(LONG number) {
    return number == helmkit::HKLM ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

// A value "entry" in each Run key, a package, a service and each special place; every program with a file of
// its own in the folder.
void seedOneEntryAPlace(const TempFolder& folder, const std::wstring& windows);

// Of an ini file, all lines.
void seedPlace(const startup::SpecialPlace& place, const TempFolder& folder, const std::wstring& windows);
