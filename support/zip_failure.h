// Errors on their way through libzip, which is written in C: no exception may pass through it.
#pragma once

#include <exception>
#include <utility>

#include <zip.h>

#include "win32/base/error.h"

namespace support {

// Keeps the first exception of what libzip calls back, until libzip has returned.
class KeptFailure {
  public:
    // Keeps the exception being handled.
    void keep() noexcept {
        if (!kept_) kept_ = std::current_exception();
    }

    void rethrow() {
        if (kept_) std::rethrow_exception(std::exchange(kept_, nullptr));
    }

  private:
    std::exception_ptr kept_;
};

// A place for libzip to tell of a failure.
struct ZipError : zip_error_t {
    ZipError() { zip_error_init(this); }
    ~ZipError() { zip_error_fini(this); }
    ZipError(const ZipError&) = delete;
    ZipError& operator=(const ZipError&) = delete;
};

// libzip's failure as an Error; what a call-back kept is thrown instead. E_OUTOFMEMORY, ERROR_CANCELLED after
// Cancel, ERROR_FILE_NOT_FOUND for an archive that is not there, ERROR_INVALID_DATA for what is no sound
// archive, E_FAIL for the rest, with libzip's text.
win32::Error zipError(KeptFailure& kept, zip_error_t* error, const std::wstring& archive);

}  // namespace support
