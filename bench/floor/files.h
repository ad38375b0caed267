// What the floors ask of the files that entries name.
#pragma once

#include <string>
#include <unordered_map>

#include "bench/floor/windows.h"

namespace bench::floor {

struct FileStrings {
    std::wstring path, description, company;
};

// One search, one long name and one version query for each distinct file; made afresh for every refresh.
class Files {
  public:
    // `command` is a program's path, quoted or up to the first blank, with whatever follows it.
    const FileStrings& of(const std::wstring& command);

  private:
    std::unordered_map<std::wstring, FileStrings> known_;
};

}  // namespace bench::floor
