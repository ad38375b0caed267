// The notification libraries that Windows needs, of the Winlogon and the services page.
#pragma once

#include <string>

namespace startup {

// True for a library made by exactly "Microsoft Corporation" that is one of the six known files in the system
// folder. `sysDir` is lower-cased and ends in a backslash.
bool isProtectedLibrary(const std::wstring& fileName, const std::wstring& manufacturer,
                        const std::wstring& sysDir);

}  // namespace startup
