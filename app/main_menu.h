// The main menu.
#pragma once

#include "win32/base/platform.h"

namespace app {

enum Command : UINT {
    mnuRefresh = 1001,
    mnuExit,
    mnuBackup,
    mnuRestore,
    mnuVisitWebsite,
    mnuAbout,
    mnuTandem = 1100,  // plus the row's index, 0 to 3
};

HMENU createMainMenu();

}  // namespace app
