// The strings of a file's version resource.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "win32/base/handle.h"
#include "win32/base/platform.h"

namespace win32 {

// The file's version block with room behind it for what Windows reads and writes there; `room` is the size of
// both. Null for a file that is missing or has none.
OwnedPages readVersionBlock(const std::wstring& path, size_t& room);

class VersionResource {
  public:
    // Reads the file's version block once. A file that is missing or has none gives an object without
    // strings, and so does any text but a full path that is a file: Windows would search for it.
    explicit VersionResource(const std::wstring& path, LANGID userLanguage = ::GetUserDefaultLangID());

    // The string of that name (letter case does not matter) up to its first NUL, from the first table where
    // it is not blank, so that a table that is named but missing or empty hides nothing. Blank only when it
    // is blank in every table that has it; none when no table has it.
    std::optional<std::wstring> string(const std::wstring& name) const;

  private:
    std::optional<std::wstring> stringOf(const std::wstring& table, const std::wstring& name) const;

    size_t room_ = 0;
    OwnedPages pages_;
    std::string_view block_;  // all of the pages' room
    std::vector<std::wstring> tables_;
};

}  // namespace win32
