// What starts before anything is listed: logs, plug-in, component check, title.
#pragma once

#include <functional>
#include <string>

#include "helmkit/client/logger.h"

namespace app {

// Makes the logger and opens the logs in `folder`, which has no backslash at its end; writes the start lines,
// lets the plug-in have the logger, checks the components and calls `setTitle`. A step that fails is passed
// over and logged at the end. False when a component is missing: the user has been told, and the program is
// to end.
bool initialize(helmkit::Logger& logger, const std::wstring& folder,
                const std::function<void(const std::wstring& title)>& setTitle);

}  // namespace app
