// Which drives and shares a refresh need not ask any more.
#pragma once

#include <string>
#include <unordered_map>

namespace files {

// Lives for one refresh of a list. The root of a path, the drive's or the share's, is asked before the first
// path on it; where it is not ready or its network cannot be reached, nothing on it is looked at again.
class Reach {
  public:
    // True for a full path whose root does not answer.
    bool isBeyond(const std::wstring& path);

  private:
    std::unordered_map<std::wstring, bool> isDead_;  // by the root in lower case
};

}  // namespace files
