#include "startup/way_back.h"

#include "files/registry_file.h"
#include "helmkit/client/shared_services.h"
#include "win32/files/file_search.h"
#include "win32/files/files.h"
#include "win32/system/date_time.h"
#include "win32/system/desktop.h"
#include "win32/system/system.h"

namespace startup {

WayBack::WayBack(helmkit::RegistryAccess& registry, const SpecialPlace& place,
                 const files::WindowsFolders& folders)
    : place_(place), iniFile_(folders.winDir + place.location), before_(held(registry)) {
    if (before_.empty()) return;
    path_ = newPath();
    try {
        write();
    } catch (...) {
        win32::removeFile(path_);
        throw;
    }
}

void WayBack::write() {
    if (place_.kind == PlaceKind::iniLine) return helmkit::fileServices().WriteTextFile(path_, before_);
    files::ExportTexts texts;
    texts.emplace_back(before_);
    omissions_ = files::writeRegistryFile(path_, std::move(texts));
}

// What stands at the place, in the text that is kept of it.
std::wstring WayBack::held(helmkit::RegistryAccess& registry) const {
    switch (place_.kind) {
        case PlaceKind::registryValue:
            return registry.ExportValue(place_.hive, place_.location, place_.name).text();
        case PlaceKind::runOnceEx:
            return registry.ExportKey(place_.hive, place_.location).text();
        case PlaceKind::iniLine:
            return helmkit::fileServices().ReadTextFile(iniFile_).text();
        case PlaceKind::startupFolder:
            break;
    }
    return {};
}

// The name is taken at once, by an empty file: another instance of the program may look for one, too.
std::wstring WayBack::newPath() const {
    const std::wstring folder = win32::moduleFolder(nullptr) + L"\\Backup";
    win32::createFolder(folder, win32::Links::refused);
    const std::wstring location = place_.location;
    const bool isIni = place_.kind == PlaceKind::iniLine;
    const std::wstring begin = folder + L'\\' +
                               (isIni ? location.substr(0, location.find(L'.')) : L"Restored") + L' ' +
                               win32::fileNameDateTime(win32::desktop().localTime());
    const std::wstring extension = isIni ? L".ini" : L".reg";
    std::wstring path = begin + extension;
    for (int number = 2; !win32::createNewFile(path); ++number) {
        path = begin + L" (" + std::to_wstring(number) + L")" + extension;
    }
    return path;
}

void WayBack::dropIfUnchanged(helmkit::RegistryAccess& registry) const {
    if (!path_.empty() && held(registry) == before_) win32::removeFile(path_);
}

}  // namespace startup
