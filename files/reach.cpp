#include "files/reach.h"

#include "win32/base/path.h"
#include "win32/base/text.h"
#include "win32/files/file_search.h"
#include "win32/files/roots.h"

namespace files {

bool Reach::isBeyond(const std::wstring& path) {
    const std::wstring root = win32::isFullPath(path) ? win32::rootOf(path) : std::wstring();
    if (root.empty()) return false;
    auto [entry, isNew] = isDead_.try_emplace(win32::lowered(root));
    if (isNew) entry->second = win32::isOutOfReach(win32::errorOfRoot(root));
    return entry->second;
}

}  // namespace files
