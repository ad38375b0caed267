#include "win32/files/local_files.h"

#include "win32/base/flavour.h"

namespace win32 {

bool isLocal(const std::wstring& path) {
    bool hasDrive = path.size() > 3 && path[1] == L':' && path[2] == L'\\';
    if (!hasDrive) return false;
    UINT type = withFlavour([&](auto f) { return f.getDriveType(f.in(path.substr(0, 3))); });
    return type == DRIVE_FIXED || type == DRIVE_RAMDISK || type == DRIVE_REMOVABLE || type == DRIVE_CDROM;
}

}  // namespace win32
