// Registry keys with what is below them.
#pragma once

#include "win32/registry/registry.h"

namespace win32 {

// Deletes a key with all that is below it, children first. Nothing is deleted where one of them may not be
// opened for that; what fails later stops it. The first error is given. A link is deleted, what it leads to
// stays. The empty path, a whole hive, is refused.
LONG deleteKeyTree(HKEY root, const std::wstring& path, RegistryView view = RegistryView::whole);

}  // namespace win32
