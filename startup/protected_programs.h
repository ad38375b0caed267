// The programs of the Run family that Windows needs.
#pragma once

#include <string>

#include "files/windows_folders.h"

namespace startup {

// True for a program made by exactly "Microsoft Corporation" that is one of the known files in its known
// folder. The list differs between the NT family and Windows 95, 98 and Me.
bool isProtectedProgram(const std::wstring& fileName, const std::wstring& manufacturer,
                        const files::WindowsFolders& folders);

}  // namespace startup
