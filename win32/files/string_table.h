// A string of a program file's string table, read from the file's bytes. Calls nothing of Windows, whose own
// reader believes the lengths that stand there.
//
// Format: the resource section of portable executables. It is a tree of directories by type, by block of 16
// strings and by language; a block's strings stand one after the other, each behind its length.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace win32 {

// The bytes at an offset of the file, fewer where it ends.
using ReadBytes = std::function<std::string(uint64_t offset, size_t count)>;

// The string of that number (0 to 65535) in the first of the languages that has it, else in the one that the
// file has first. None when it is not there, is empty, or anything on the way to it lies outside the file or
// its section. At most 4095 characters, as Windows gives them.
std::optional<std::wstring> stringOfFile(const ReadBytes& read, unsigned number,
                                         const std::vector<uint16_t>& languages);

}  // namespace win32
