// The version strings of the files that entries start.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>

#include "startup/command_resolver.h"

namespace startup {

// The strings of a file's version resource that the lists show; absent and empty are different things.
struct FileDescription {
    std::optional<std::wstring> description;  // "FileDescription"
    bool hasProductName = false;              // "ProductName"
    std::wstring productDescription;          // "ProductDescription", empty when absent
    std::wstring company;                     // "CompanyName", empty when absent

    // "FileDescription" where the file has one; otherwise, where it has a "ProductName", its
    // "ProductDescription"; otherwise the fallback. The test is on one string and the read of another on
    // purpose: an empty name can come out, and the list shows it.
    std::wstring nameOr(const std::wstring& fallback) const;
};

class FileDescriptions {
  public:
    explicit FileDescriptions(CommandResolver& commands) : commands_(commands) {}

    // Reads each file once.
    const FileDescription& of(const std::wstring& fileName);

  private:
    CommandResolver& commands_;
    std::unordered_map<std::wstring, FileDescription> known_;
};

}  // namespace startup
