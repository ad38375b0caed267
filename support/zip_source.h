// What libzip reads from and writes to: sources of our own, since its own ones call functions that Windows 98
// lacks, and would keep a program that links them from starting there.
#pragma once

#include <ctime>
#include <functional>
#include <memory>
#include <string>

#include "support/zip_failure.h"
#include "support/zip_inputs.h"
#include "support/zip_line_ends.h"

namespace support {

struct ZipSourceDeleter {
    void operator()(zip_source_t* source) const { zip_source_free(source); }
};
// Given up with release() once libzip has taken the source over.
using ZipSource = std::unique_ptr<zip_source_t, ZipSourceDeleter>;

// An archive on disk, made where there is none. What libzip writes goes into a file beside it, which takes
// its place whole or not at all (win32::FileReplacement). `kept` must outlive the source.
ZipSource makeArchiveSource(const std::wstring& path, KeptFailure& kept);

// A file time as libzip's, whose range is the C library's: 32 bits in the 32-bit program.
time_t modificationTime(const FILETIME& written);

// A file that goes into an archive, read while the archive is written and not held open before.
struct ZipReading {
    LineEnds lineEnds = LineEnds::asTheyAre;
    // Told the percentage of the file that is read, when it changes, from 0 to 100. May throw.
    std::function<void(int)> progress;
};
ZipSource makeInputSource(const ZipInput& input, const ZipReading& reading, KeptFailure& kept);

}  // namespace support
