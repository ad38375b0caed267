// The menu commands for companion tools, home page and about box.
#pragma once

#include "helmkit/client/logger.h"
#include "win32/base/platform.h"

namespace app {

// Starts the companion tool of a row of the menu, from 0, or offers its download.
void mnuTandem_Click(HWND window, const helmkit::Logger& logger, unsigned index);
void mnuAbout_Click(HWND window, const helmkit::Logger& logger);
void mnuVisitWebsite_Click(const helmkit::Logger& logger);

}  // namespace app
