// Files and folders. Failures are thrown as Errors that name the path, except where a header says otherwise.
//
// A path that Windows would take for another one, with a NUL or, in the ANSI flavour, with a character that
// the code page lacks, names nothing that is there, and cannot be made.
//
// A 32-bit program on 64-bit Windows is shown another system folder; everything here looks at the real one.
#pragma once

#include <cstdint>
#include <string>

#include "win32/base/handle.h"

namespace win32 {

// Shows a redirected program the real system folder, in this thread, for the lifetime of the object; does
// nothing elsewhere. Only around looking at files: Windows must not load a library meanwhile.
class NoFileRedirection {
  public:
    NoFileRedirection();
    ~NoFileRedirection();
    NoFileRedirection(const NoFileRedirection&) = delete;
    NoFileRedirection& operator=(const NoFileRedirection&) = delete;

  private:
    void* before_ = nullptr;
    bool isOff_ = false;
};

// GetFileAttributes, INVALID_FILE_ATTRIBUTES for what is not there or may not be looked at.
DWORD attributesOf(const std::wstring& path);

// True for a file, false for a folder, for nothing there and for what may not be looked at.
bool fileExists(const std::wstring& path);

// Whether a last part of a path that is a link to another file or folder (a reparse point, which the NT
// family has) is followed or refused as one that may not be opened.
enum class Links { followed, refused };

// Makes one folder; one that is there is no error, a file of that name is.
void createFolder(const std::wstring& path, Links links = Links::followed);

// Makes an empty file. False when something of that name is there; what else fails is thrown.
bool createNewFile(const std::wstring& path);

// A file open for reading, others may read and write it meanwhile.
class FileReader {
  public:
    explicit FileReader(const std::wstring& path);
    uint64_t size() const { return size_; }  // in bytes, as it was at opening
    void skipTo(uint64_t offset);
    // Reads up to `count` bytes, fewer only at the end of the file.
    size_t read(void* bytes, size_t count);

  private:
    std::wstring path_;
    OwnedFile file_;
    uint64_t size_ = 0;
};

// Writes the file whole or not at all: on failure the old one is there as it was, and nothing else. A file
// that is replaced keeps its attributes and, on the NT family, its access rights; a read-only one is refused.
void replaceFile(const std::wstring& path, const std::string& bytes);

// A file open for appending, made if absent. Others may read and append meanwhile: each write goes to the end
// at that moment, on the NT family by the system itself.
class AppendFile {
  public:
    AppendFile() = default;
    explicit AppendFile(const std::wstring& path, Links links = Links::followed);
    void write(const std::string& bytes);
    explicit operator bool() const { return static_cast<bool>(file_); }

  private:
    std::wstring path_;
    OwnedFile file_;
    OwnedObject turns_;  // a mutex, before the NT family
};

// What SearchPath finds without a path and an extension of its own; empty when it finds nothing or 2000
// characters or more.
std::wstring searchPath(const std::wstring& name);

// The long form of a path; empty when it does not exist, or takes 2000 characters or more.
std::wstring longPath(const std::wstring& path);

}  // namespace win32
