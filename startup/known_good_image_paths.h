// The image paths of the services and drivers of plain Windows 2000 and XP installations.
#pragma once

#include <string>

namespace startup {

// True when the image path, lower-cased and otherwise as it stands in the registry, is one of the paths of a
// plain Windows 2000 or XP.
bool IsKnownGoodImagePath(const std::wstring& imagePath);

}  // namespace startup
