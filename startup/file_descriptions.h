// What a refresh knows of the files that entries start: their full names and their version strings.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "files/CFileChecker.h"
#include "helmkit/client/registry_access.h"

namespace startup {

// The strings of a file's version resource that the lists show; absent and empty are different things.
struct FileDescription {
    std::unique_ptr<std::wstring> description;  // "FileDescription"
    bool hasProductName = false;                // "ProductName"
    std::wstring productDescription;            // "ProductDescription", empty when absent
    std::wstring company;                       // "CompanyName", empty when absent

    // "FileDescription" where the file has one; otherwise, where it has a "ProductName", its
    // "ProductDescription" (the test on one and the read of the other are kept on purpose, so that an empty
    // name can come out); otherwise the fallback.
    std::wstring nameOr(const std::wstring& fallback) const;
};

// Made afresh by every refresh, so that no answer is older than one.
class FileDescriptions {
  public:
    // The full name of the file that a command starts.
    std::wstring resolve(const std::wstring& command);

    // The same for a registry value's data. A value of type REG_EXPAND_SZ whose text as it stands names no
    // existing file is resolved once more with its environment references replaced, and that answer is taken
    // if it is a file.
    std::wstring resolveValue(helmkit::RegistryAccess& registry, LONG hive, const std::wstring& keyPath,
                              const std::wstring& valueName, const std::wstring& data);

    // Read once per file.
    const FileDescription& of(const std::wstring& fileName);

  private:
    files::CFileChecker checker_;
    std::unordered_map<std::wstring, FileDescription> known_;
};

}  // namespace startup
