// From the command of an entry to the full name of its file.
#pragma once

#include <string>
#include <unordered_map>

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

    // True for a full path on a drive or share that does not answer: nothing there is looked at.
    bool isOutOfReach(const std::wstring& path) { return checker_.isOutOfReach(path); }

  private:
    // Each path is looked at once.
    bool isFile(const std::wstring& path);

    files::CFileChecker checker_;
    std::unordered_map<std::wstring, bool> isFile_;
};

}  // namespace startup
