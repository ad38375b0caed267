// What libzip reads from and writes to: sources of our own, since its own ones call functions that Windows 98
// lacks, and would keep a program that links them from starting there.
#pragma once

#include <memory>

#include "support/zip_failure.h"

namespace support {

struct ZipSourceDeleter {
    void operator()(zip_source_t* source) const { zip_source_free(source); }
};
// Given up with release() once libzip has taken the source over.
using ZipSource = std::unique_ptr<zip_source_t, ZipSourceDeleter>;

}  // namespace support
