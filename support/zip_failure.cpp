#include "support/zip_failure.h"

#include "win32/base/text.h"

namespace support {

namespace {

HRESULT numberOf(int code) {
    switch (code) {
        case ZIP_ER_MEMORY:
            return E_OUTOFMEMORY;
        case ZIP_ER_CANCELLED:
            return HRESULT_FROM_WIN32(ERROR_CANCELLED);
        case ZIP_ER_NOENT:
            return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
        case ZIP_ER_NOZIP:
        case ZIP_ER_INCONS:
        case ZIP_ER_MULTIDISK:
        case ZIP_ER_EOF:
            return HRESULT_FROM_WIN32(ERROR_INVALID_DATA);
        default:
            return E_FAIL;
    }
}

}  // namespace

win32::Error zipError(KeptFailure& kept, zip_error_t* error, const std::wstring& archive) {
    kept.rethrow();
    const std::string text = zip_error_strerror(error);
    return win32::Error(numberOf(zip_error_code_zip(error)), archive + L": " + win32::fromAnsi(text));
}

}  // namespace support
