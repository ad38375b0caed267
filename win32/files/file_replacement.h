// Writing a file whole or not at all.
#pragma once

#include <cstdint>
#include <string>

#include "win32/base/handle.h"

namespace win32 {

// A new file beside `path`, which takes its place at commit(). Until then, and when anything throws, the old
// file is there as it was; the new one goes with the object. A file that is replaced keeps its attributes
// and, on the NT family, its access rights; a read-only one and a folder are refused at once. Errors name
// `path`.
//
// A redirected program must hold a NoFileRedirection (win32/files/files.h) over each call.
class FileReplacement {
  public:
    explicit FileReplacement(const std::wstring& path);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    void write(const void* bytes, size_t count);
    void seekTo(uint64_t offset);
    uint64_t position() const { return position_; }  // where the next write goes, in bytes from the start
    void commit();

  private:
    void giveAttributes(DWORD attributes);

    std::wstring path_, newPath_;
    DWORD attributes_;  // of the old file, INVALID_FILE_ATTRIBUTES when there is none
    OwnedFile file_;
    uint64_t position_ = 0;
};

}  // namespace win32
