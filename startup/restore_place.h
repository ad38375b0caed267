// Putting Windows' default back at a special place.
#pragma once

#include "files/windows_folders.h"
#include "helmkit/client/registry_access.h"
#include "startup/special_places.h"

namespace startup {

// For all places but the startup folders. Throws when Windows refuses; what was changed before stays changed.
void restorePlace(helmkit::RegistryAccess& registry, const SpecialPlace& place,
                  const files::WindowsFolders& folders);

}  // namespace startup
