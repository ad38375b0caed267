// The shell's properties dialog for a file.
#pragma once

#include <string>

#include "win32/base/platform.h"

namespace files {

// Opens the dialog, which is modeless and the shell's own, owned by `ownerWindow`. True when the shell
// accepted the request (ShellExecuteEx, verb "properties").
bool ShowFileProperties(const std::wstring& fileName, HWND ownerWindow);

}  // namespace files
