#include "report/place_entries.h"

#include "helmkit/client/shared_services.h"
#include "report/registry_places.h"
#include "report/run_once_ex.h"
#include "report/startup_folder.h"
#include "startup/special_places.h"

namespace report {

namespace {

using startup::PlaceKind;
using startup::SpecialPlace;

std::wstring stateOf(startup::Icon icon) {
    switch (icon) {
        case startup::Icon::protectedEntry:
            return state::atDefault;
        case startup::Icon::exclamation:
            return state::changed;
        case startup::Icon::ordinary:
            return state::ordinary;
    }
    return {};
}

// The window looks for no file behind these values. Where one is a command line that starts a file which is
// there, the report tells the file.
void setFileIfAny(Gathering& gathering, Entry& entry, const std::wstring& file) {
    if (!helmkit::fileServices().FileExists(file)) return;
    gathering.facts.describe(entry, file);
    entry.setIfAny(Field::maker, gathering.descriptions.of(file).company);
}

void setValueOf(Gathering& gathering, Entry& entry, const SpecialPlace& place) {
    const startup::RegistryValueName value = {place.hive, place.location, place.name};
    setValue(entry, value);
    setCommand(entry, gathering.registry, value);
    setFileIfAny(gathering, entry,
                 gathering.commands.resolveValue(gathering.registry, value.hive, value.keyPath,
                                                 value.valueName, entry.text(Field::command)));
}

void setLineOf(Gathering& gathering, Entry& entry, const SpecialPlace& place, const std::wstring& rest) {
    entry.set(Field::placeFile, gathering.folders.winDir + place.location).set(Field::line, place.name);
    entry.set(Field::command, rest);
    setFileIfAny(gathering, entry, gathering.commands.resolve(rest));
}

}  // namespace

std::vector<Entry> placeEntries(Gathering& gathering, const startup::StartupItem& item) {
    const SpecialPlace& place = startup::specialPlace(item.place());
    Entry row;
    row.set(Field::category, L"custom").set(Field::kind, kind::entry);
    row.set(Field::name, item.name()).set(Field::state, stateOf(item.icon()));
    std::vector<Entry> contents;
    switch (place.kind) {
        case PlaceKind::registryValue:
            setValueOf(gathering, row, place);
            break;
        case PlaceKind::iniLine:
            setLineOf(gathering, row, place, item.manufacturer());
            break;
        case PlaceKind::runOnceEx:
            setKey(row, {place.hive, place.location});
            contents = runOnceExValues(gathering, place);
            break;
        case PlaceKind::startupFolder:
            setValue(row, {place.hive, place.location, place.name});
            contents = startupFolderFiles(gathering, place);
            break;
    }
    contents.insert(contents.begin(), std::move(row));
    return contents;
}

}  // namespace report
