#include "startup/ucOther.h"

#include <optional>

#include "files/explorer.h"
#include "helmkit/client/registry_access.h"
#include "startup/enumeration.h"
#include "startup/read_place.h"
#include "startup/restore_place.h"
#include "startup/way_back.h"

namespace startup {

namespace {

const CategoryDesign ownDesign = {.typeName = L"ucOther",
                                  .heading = L"Detected Startup Programs:",
                                  .columns = {L"Location", L"Value"},
                                  .note = L"All settings containing empty values are skipped",
                                  .button = L"&Delete From Startup",
                                  .messages = {.refusal = STRING_REFUSE_PLACE,
                                               .confirmation = STRING_CONFIRM_RESTORE_PLACE,
                                               .success = STRING_PLACE_RESTORED},
                                  .hasFileBox = false,
                                  .hasContextMenu = false,
                                  .hasContextMenuKey = false,
                                  .namesMissingMaker = false,
                                  .emphasizesValues = true,
                                  .keepsSelection = true};

const DeletionMessages folderMessages = {
    .refusal = 0, .confirmation = STRING_OPEN_STARTUP_FOLDER, .success = 0, .failure = 0};

bool isFolder(const StartupItem& item) {
    return specialPlace(item.place()).kind == PlaceKind::startupFolder;
}

}  // namespace

ucOther::ucOther() : Category(ownDesign) {}

void ucOther::enumerate(Enumeration& run) const {
    IniFiles iniFiles;
    LONG number = 0;
    for (const SpecialPlace& place : specialPlaces()) {
        ++number;
        run.place([&] {
            const PlaceState state = readPlace(run.registry, iniFiles, place, run.folders);
            if (!state.listed) return;
            run.list.add({.entryName = place.description,
                          .name = place.description,
                          .file = {},
                          .manufacturer = state.value,
                          .icon = state.icon,
                          .place = number});
        });
    }
}

DeletionMessages ucOther::messagesFor(const StartupItem& item) const {
    return isFolder(item) ? folderMessages : Category::messagesFor(item);
}

Category::Deletion ucOther::deleteItem(const StartupItem& item, const std::wstring& rowText,
                                       const helmkit::Logger& log) const {
    const SpecialPlace& place = specialPlace(item.place());
    helmkit::RegistryAccess registry;
    if (isFolder(item)) {
        // The path goes as it stands in the registry, unexpanded and unquoted.
        files::startExplorer(startupFolder(registry, place));
        return {.succeeded = true, .logLine = {}};
    }
    const Deletion restored = {
        .succeeded = true, .logLine = L"Restored: " + rowText, .logSource = source(L".cmdDelete_Click")};
    const files::WindowsFolders folders = files::GetWindowsFolders();
    std::optional<WayBack> wayBack;
    helmkit::trapped(log, restored.logSource, [&] {
        wayBack.emplace(registry, place, folders);
        for (const std::wstring& omission : wayBack->omissions())
            log.WriteLog(0, omission, helmkit::caughtError, restored.logSource);
    });
    const auto dropUnused = [&] {
        helmkit::trapped(log, restored.logSource, [&] {
            if (wayBack) wayBack->dropIfUnchanged(registry);
        });
    };
    try {
        restorePlace(registry, place, folders);
    } catch (...) {
        dropUnused();
        throw;
    }
    dropUnused();
    return restored;
}

}  // namespace startup
