#include "support/cZip.h"

#include "support/zip_names.h"
#include "support/zip_update.h"
#include "win32/base/error.h"
#include "win32/files/file_search.h"

namespace support {

void cZip::ClearFileSpecs() {
    specs_.clear();
}

LONG cZip::AddFileSpec(const std::wstring& sSpec) {
    specs_.push_back(sSpec);
    return FileSpecCount();
}

LONG cZip::FileSpecCount() const {
    return static_cast<LONG>(specs_.size());
}

const std::wstring& cZip::FileSpec(LONG index) const {
    if (index < 1 || index > FileSpecCount()) {
        win32::raise(DISP_E_BADINDEX, L"There is no file specification " + std::to_wstring(index));
    }
    return specs_[index - 1];
}

std::wstring cZip::archivePath() const {
    if (ZipFile.empty()) win32::raise(E_INVALIDARG, L"No archive is named");
    if (specs_.empty()) win32::raise(E_INVALIDARG, L"No file is named");
    if (ConvertCRLFToLF && ConvertLFToCRLF) win32::raise(E_INVALIDARG, L"Line ends cannot go both ways");
    if (!BasePath.empty() && !win32::isFolder(BasePath)) win32::raiseWin32(ERROR_PATH_NOT_FOUND, BasePath);
    return win32::fullPath(resolvedPath(ZipFile, BasePath));
}

void cZip::Zip() {
    ZipUpdate(*this, archivePath(), specs_).add();
}

void cZip::Delete() {
    ZipUpdate(*this, archivePath(), specs_).remove();
}

}  // namespace support
