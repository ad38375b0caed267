// What stands in a folder.
#pragma once

#include <string>

namespace win32 {

// True when the folder, named with its backslash, holds a file that is neither hidden, system nor a folder.
bool holdsNormalFile(const std::wstring& folder);

}  // namespace win32
