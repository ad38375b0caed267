// The Windows file browser.
#pragma once

#include <string>

namespace files {

// Starts "explorer " and the argument, a folder or a web address as it stands, in a normal window. The
// program is the Windows folder's own explorer.exe, never one found by way of the current folder or PATH.
// Throws when it cannot be started.
void startExplorer(const std::wstring& argument);

}  // namespace files
