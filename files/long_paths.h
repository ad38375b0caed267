// Long paths of many files, where making each folder long again would look into every folder above it.
#pragma once

#include <string>
#include <unordered_map>

namespace files {

// Lives for one refresh of a list: a folder's long form is asked of Windows once and kept.
class LongPaths {
  public:
    // What win32::longPath gives for the path of a file that is there.
    std::wstring of(const std::wstring& path);

  private:
    const std::wstring& folder(const std::wstring& path);

    std::unordered_map<std::wstring, std::wstring> folders_;
};

}  // namespace files
