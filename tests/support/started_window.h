// The main window as it is after its start.
#pragma once

#include <doctest/doctest.h>

#include "app/FMain.h"
#include "tests/support/scripted_desktop.h"

// The plug-in is not offered to this process: starting stops at its message, with the logs open.
inline void startWindow(app::FMain& window, ScriptedDesktop& desktop) {
    desktop.messageBoxAnswers.push_back(IDOK);
    CHECK_FALSE(window.Form_Initialize());
    window.Form_Load();
}
