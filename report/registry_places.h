// Places in the registry as the report names them.
#pragma once

#include <string>

#include "helmkit/client/registry_access.h"
#include "report/entry.h"
#include "startup/StartupItem.h"

namespace report {

struct RegistryKeyName {
    LONG hive;
    std::wstring keyPath;
};

// The values that name the library of a Winlogon package and the program of a service.
startup::RegistryValueName libraryOf(const std::wstring& package);
startup::RegistryValueName imagePathOf(const std::wstring& service);

std::wstring hiveName(LONG hive);

void setKey(Entry& entry, const RegistryKeyName& key);
void setValue(Entry& entry, const startup::RegistryValueName& value);

// The data as it is stored, with the name of its type; nothing for a value that is missing. Throws what
// reading throws.
void setCommand(Entry& entry, helmkit::RegistryAccess& registry, const startup::RegistryValueName& value);

}  // namespace report
