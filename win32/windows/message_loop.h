// The message loop of the user-interface thread.
#pragma once

#include <functional>

#include "win32/base/platform.h"

namespace win32 {

// Runs until the program is asked to end; returns its exit code. `preview` sees each message before its
// window does; returning true consumes it.
int runMessageLoop(const std::function<bool(MSG&)>& preview);

// A loop inside another one, for a modal window: runs while `condition` holds. An end of the program ends it
// too and is left to the outer loop.
void runMessageLoopWhile(const std::function<bool()>& condition, const std::function<bool(MSG&)>& preview);

// Lets the messages that are waiting run. An end of the program is left to the main loop.
void runPendingMessages();

// Lets a window's dialog keys (Tab, access keys) do their work; true when the message was one.
bool isDialogKey(HWND window, MSG& message);

}  // namespace win32
