// Three checks of the browser's configuration. No row is built from them; they stand ready for a caller.
#pragma once

#include <string>

#include "build_settings.h"
#include "helmkit/client/registry_access.h"
#include "startup/StartupItem.h"

namespace startup {

// Each returns Icon::protectedEntry ("OK") for what Windows has there, Icon::exclamation ("i") for anything
// else.

// The library that serves a class (HKEY_CLASSES_ROOT, CLSID, InProcServer32), expanded and lower-cased in
// `server`, is `dllName` in the system folder.
Icon classServerCheck(helmkit::RegistryAccess& registry, const std::wstring& classId,
                      const std::wstring& dllName, std::wstring& server);

// The page is the system folder's own blank page. `path` may hold environment references.
Icon blankPageCheck(const std::wstring& path);

// The page is blank or the portal's, in any letter case, or one of the maker's or of the browser's own pages,
// in exactly their letters.
Icon startPageCheck(const std::wstring& address, const std::wstring& portalPage = settings::portalPage);

}  // namespace startup
