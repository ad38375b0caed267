// The Windows and system folder in the form that the protected-file lists compare with.
#pragma once

#include <string>

namespace files {

// Both lower-cased and ending in a backslash. `sysDir` is "system32\" below the Windows folder on the NT
// family, "system\" on Windows 95, 98 and Me.
void GetWindowsFolders(std::wstring& winDir, std::wstring& sysDir);

}  // namespace files
