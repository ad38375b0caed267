// From the command of an entry to the full name of its file.
#pragma once

#include <string>

#include "files/CFileChecker.h"
#include "helmkit/client/registry_access.h"

namespace startup {

class CommandResolver {
  public:
    // The full name of the file that a command starts.
    std::wstring resolve(const std::wstring& command);

    // The same for a registry value's data. Where that is no existing file and the value is a REG_EXPAND_SZ,
    // the environment references in the name that the command-line rules gave are replaced and that name is
    // looked up. The answer is taken if it is a file.
    std::wstring resolveValue(helmkit::RegistryAccess& registry, LONG hive, const std::wstring& keyPath,
                              const std::wstring& valueName, const std::wstring& data);

  private:
    files::CFileChecker checker_;
};

}  // namespace startup
