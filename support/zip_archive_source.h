// The archive on disk, as libzip reads and writes it.
#pragma once

#include <string>

#include "support/zip_source.h"

namespace support {

// An archive on disk, made where there is none. What libzip writes goes into a file beside it, which takes
// its place whole or not at all (win32::FileReplacement). `kept` must outlive the source.
ZipSource makeArchiveSource(const std::wstring& path, KeptFailure& kept);

}  // namespace support
