// Backing the startup configuration up, and the way to restore it.
#pragma once

#include <string>

#include "helmkit/client/logger.h"
#include "win32/base/platform.h"

namespace app {

// Writes a registry-export file named after the present time into the folder "Backup" below `programFolder`.
// What fails is logged, and no file results.
void writeBackup(const helmkit::Logger& logger, const std::wstring& programFolder);

// The menu commands over the main window.
void mnuBackup_Click(HWND window, const helmkit::Logger& logger, const std::wstring& programFolder);
void mnuRestore_Click(HWND window, const helmkit::Logger& logger, const std::wstring& programFolder);

}  // namespace app
