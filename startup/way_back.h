// A way back for the places that are set back to their default.
#pragma once

#include <string>
#include <vector>

#include "files/windows_folders.h"
#include "helmkit/client/registry_access.h"
#include "startup/special_places.h"

namespace startup {

// What a place holds, kept in a file of its own in the folder "Backup" beside the program before the place is
// changed. The backup of the start has no ini files, and a place may have changed since.
//
// Registry places go into `Restored <date> <time>.reg` in the form of the backup, RunOnceEx with all that is
// below it; an ini file goes, byte for byte, into `win <date> <time>.ini` or `system <date> <time>.ini`. A
// file that is there is never replaced: ` (2)` and so on is put before the extension.
class WayBack {
  public:
    // Writes the file, unless the place holds nothing. Throws when it cannot be written.
    WayBack(helmkit::RegistryAccess& registry, const SpecialPlace& place,
            const files::WindowsFolders& folders);

    // What the file names as missing in it.
    const std::vector<std::wstring>& omissions() const { return omissions_; }

    // Removes the file again where the place is as it was.
    void dropIfUnchanged(helmkit::RegistryAccess& registry) const;

  private:
    std::wstring held(helmkit::RegistryAccess& registry) const;
    std::wstring newPath() const;
    void write();

    const SpecialPlace& place_;
    const std::wstring iniFile_;
    const std::wstring before_;
    std::wstring path_;
    std::vector<std::wstring> omissions_;
};

}  // namespace startup
