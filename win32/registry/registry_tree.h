// Registry keys with what is below them.
#pragma once

#include "win32/registry/registry.h"

namespace win32 {

// Deletes a key with all that is below it, children first; stops at the first that cannot be deleted and
// gives its error. A link is deleted, what it leads to stays. The empty path, a whole hive, is refused.
LONG deleteKeyTree(HKEY root, const std::wstring& path, RegistryView view = RegistryView::whole);

}  // namespace win32
