#include "startup/restore_place.h"

#include "helmkit/client/file_services.h"
#include "helmkit/client/shared_services.h"
#include "startup/ini_lines.h"
#include "win32/base/error.h"
#include "win32/system/desktop.h"

namespace startup {

namespace {

void raiseUnlessDone(LONG status, const std::wstring& what) {
    if (status != ERROR_SUCCESS) win32::raiseWin32(status, what);
}

// Only Windows XP has a logon program to fall back on; elsewhere the value does not belong there.
bool isValueToDelete(const SpecialPlace& place) {
    return std::wstring_view(place.name) == L"UIHost" && !win32::isWindowsXp();
}

void restoreRegistryValue(helmkit::RegistryAccess& registry, const SpecialPlace& place,
                          const files::WindowsFolders& folders) {
    const LONG status = isValueToDelete(place) ? registry.DeleteValue(place.hive, place.location, place.name)
                                               : registry.WriteValue(place.hive, place.location, place.name,
                                                                     place.restoredValue(folders.sysDir));
    raiseUnlessDone(status, place.location);
}

void restoreIniLine(const SpecialPlace& place, const files::WindowsFolders& folders) {
    const std::wstring file = folders.winDir + place.location;
    const win32::BString text = helmkit::fileServices().ReadTextFile(file);
    const std::wstring line = place.name + place.restoredValue(folders.sysDir);
    helmkit::fileServices().WriteTextFile(
        file, withLinesReplaced(win32::BString::view(text.get()), place.name, line));
}

void clearRunOnceEx(helmkit::RegistryAccess& registry, const SpecialPlace& place) {
    for (const std::wstring& subkey : registry.EnumSubkeys(place.hive, place.location)) {
        raiseUnlessDone(registry.DeleteKey(place.hive, std::wstring(place.location) + L"\\" + subkey),
                        subkey);
    }
    for (const std::wstring& value : registry.EnumValues(place.hive, place.location)) {
        raiseUnlessDone(registry.DeleteValue(place.hive, place.location, value), value);
    }
}

}  // namespace

void restorePlace(helmkit::RegistryAccess& registry, const SpecialPlace& place,
                  const files::WindowsFolders& folders) {
    switch (place.kind) {
        case PlaceKind::registryValue:
            return restoreRegistryValue(registry, place, folders);
        case PlaceKind::iniLine:
            return restoreIniLine(place, folders);
        case PlaceKind::runOnceEx:
            return clearRunOnceEx(registry, place);
        case PlaceKind::startupFolder:
            return;
    }
}

}  // namespace startup
