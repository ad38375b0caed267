// The ini files of one refresh.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "startup/ini_lines.h"

namespace startup {

// A new object per refresh, so results are never stale. A file is read once, however many places it holds.
class IniFiles {
  public:
    // Its lines that start programs; none when it is missing. What cannot be read is thrown, every time.
    const std::vector<IniLine>& startupLinesOf(const std::wstring& file);

  private:
    std::map<std::wstring, std::vector<IniLine>> known_;
};

}  // namespace startup
