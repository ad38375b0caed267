// Files on their way into an archive.
#pragma once

#include <ctime>
#include <functional>

#include "support/zip_inputs.h"
#include "support/zip_line_ends.h"
#include "support/zip_source.h"

namespace support {

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
