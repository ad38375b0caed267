// What one enumeration of a category works with.
#pragma once

#include <string>

#include "files/windows_folders.h"
#include "helmkit/client/logger.h"
#include "helmkit/client/registry_access.h"
#include "helmkit/client/trap.h"
#include "startup/StartupItem.h"
#include "startup/command_resolver.h"
#include "startup/file_descriptions.h"

namespace startup {

// A new object for each enumeration, so results are never stale.
class Enumeration {
  public:
    Enumeration(const wchar_t* typeName, const helmkit::Logger& log, StartupItemList& list)
        : list(list), typeName_(typeName), log_(log) {}

    // Reads one place. An error is logged and ends the place, not the enumeration.
    template <class Body>
    void place(Body&& body) const {
        helmkit::trapped(log_, typeName_ + L".EnumItems", body);
    }
    // Reads one entry, in the same way.
    template <class Body>
    void entry(Body&& body) const {
        helmkit::trapped(log_, typeName_ + L".FillItemInfo", body);
    }

    // A value that is to be a string. What is neither REG_SZ nor REG_EXPAND_SZ counts as empty.
    std::wstring readString(LONG hive, const std::wstring& keyPath, const std::wstring& valueName) {
        helmkit::RegistryAccess::Value value = registry.ReadValue(hive, keyPath, valueName);
        return value.status == ERROR_SUCCESS ? std::move(value.data) : std::wstring();
    }

    StartupItemList& list;
    const files::WindowsFolders folders = files::GetWindowsFolders();
    helmkit::RegistryAccess registry;
    CommandResolver commands;
    FileDescriptions descriptions{commands};

  private:
    const std::wstring typeName_;
    const helmkit::Logger& log_;
};

}  // namespace startup
