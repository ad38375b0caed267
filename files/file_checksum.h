// The checksum of a file.
#pragma once

#include <cstdint>
#include <string>

namespace files {

// The checksum of a file's contents; `size` is its length in bytes. Both are 0 for a file that is empty,
// missing, unreadable or over 2 GiB; nothing is thrown.
int32_t FileChecksum(const std::wstring& fileName, int32_t& size);

}  // namespace files
