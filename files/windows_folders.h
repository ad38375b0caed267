// The Windows and system folder in the form that the protected-file lists compare with.
#pragma once

#include <string>

namespace files {

// Both are lower-cased and end in a backslash.
struct WindowsFolders {
    std::wstring winDir;
    std::wstring sysDir;  // "system32\" below winDir on the NT family, "system\" on Windows 95, 98 and Me
};

// winDir is %windir% expanded. Throws what the expansion throws.
WindowsFolders GetWindowsFolders();

}  // namespace files
