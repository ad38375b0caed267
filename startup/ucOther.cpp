#include "startup/ucOther.h"

#include "files/explorer.h"
#include "files/windows_folders.h"
#include "helmkit/client/logger.h"
#include "helmkit/client/registry_access.h"
#include "resources/messages.h"
#include "resources/resource_ids.h"

namespace startup {

namespace {

const PageDesign design = {.typeName = L"ucOther",
                           .heading = L"Detected Startup Programs:",
                           .columns = {L"Location", L"Value"},
                           .note = L"All settings containing empty values are skipped",
                           .button = L"&Delete From Startup",
                           .hasFileBox = false,
                           .hasContextMenu = false,
                           .hasContextMenuKey = false,
                           .emphasizesValues = true,
                           .keepsSelection = true};

}  // namespace

ucOther::ucOther(HWND parent) : StartupListControl(parent, L"ucOther1", design) {}

void ucOther::EnumItems(StartupItemList& list) {
    trapped(L".EnumItems", [&] {
        std::wstring sysDir;
        files::GetWindowsFolders(winDir_, sysDir);
        places_ = specialPlaces(sysDir);
        helmkit::RegistryAccess registry;
        IniFiles iniFiles;
        for (size_t i = 0; i < places_.size(); ++i) {
            trapped(L".EnumItems", [&] {
                PlaceState state = readPlace(registry, iniFiles, places_[i], winDir_);
                if (!state.listed) return;
                StartupItem item = list.AddRecord();
                item.SetName(places_[i].description);
                item.SetField(field::Place, static_cast<LONG>(i) + firstPlace);
                item.SetField(field::Name, places_[i].description);
                item.SetField(field::Manufacturer, state.value);
                item.SetField(field::GridIcon, state.icon);
            });
        }
    });
}

void ucOther::deleteRow(int row) {
    const std::wstring description = ListViewObject().text(row, 0);
    const SpecialPlace& place = places_.at(itemOf(row).number(field::Place) - firstPlace);
    if (place.kind == PlaceKind::startupFolder) return openStartupFolder(place);
    if (isProtected(row)) {
        showMessage(handle(), STRING_REFUSE_PLACE, exclamation, {description});
        return;
    }
    if (showMessage(handle(), STRING_CONFIRM_RESTORE_PLACE, exclamationOkCancel, {description}) != IDOK)
        return;
    restore(place, description);
}

void ucOther::restore(const SpecialPlace& place, const std::wstring& description) {
    helmkit::RegistryAccess registry;
    restorePlace(registry, place, winDir_);
    log().WriteLog(0, L"Restored: " + description, helmkit::information, source(L".cmdDelete_Click"));
    showMessage(handle(), STRING_PLACE_RESTORED, informationBox);
    RefreshList();
}

// The user removes files there by hand. The path goes as it stands in the registry, unexpanded and unquoted.
void ucOther::openStartupFolder(const SpecialPlace& place) {
    if (showMessage(handle(), STRING_OPEN_STARTUP_FOLDER, exclamationOkCancel) != IDOK) return;
    helmkit::RegistryAccess registry;
    files::startExplorer(startupFolder(registry, place));
    RefreshList();
}

}  // namespace startup
