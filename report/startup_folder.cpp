#include "report/startup_folder.h"

#include "helmkit/client/shared_services.h"
#include "report/registry_places.h"
#include "report/unreadable.h"
#include "startup/read_place.h"
#include "win32/base/path.h"
#include "win32/files/file_search.h"

namespace report {

namespace {

bool isNormal(const win32::FoundFile& file) {
    return !(file.attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM));
}

bool isMissing(const win32::Error& error) {
    return error.number == HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND) ||
           error.number == HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
}

Entry fileEntry(Gathering& gathering, const startup::SpecialPlace& place, const std::wstring& path,
                const std::wstring& name) {
    Entry entry;
    entry.set(Field::category, L"custom").set(Field::kind, kind::content);
    setValue(entry, {place.hive, place.location, place.name});
    const startup::FileDescription& description = gathering.descriptions.of(path);
    entry.set(Field::placeFile, path).set(Field::name, description.description.value_or(name));
    entry.set(Field::state, state::ordinary).setIfAny(Field::maker, description.company);
    gathering.facts.describe(entry, path);
    return entry;
}

}  // namespace

std::vector<Entry> startupFolderFiles(Gathering& gathering, const startup::SpecialPlace& place) {
    std::vector<Entry> entries;
    std::wstring folder = startup::startupFolder(gathering.registry, place);
    if (folder.empty()) return entries;
    folder = win32::withBackslash(helmkit::systemServices().ExpandEnvironment(folder));
    try {
        for (const win32::FoundFile& file : win32::filesIn(folder)) {
            if (isNormal(file)) entries.push_back(fileEntry(gathering, place, folder + file.name, file.name));
        }
    } catch (const win32::Error& error) {
        if (isMissing(error)) return entries;
        Entry entry = unreadable(L"custom", error.description);
        setValue(entry, {place.hive, place.location, place.name});
        entries.push_back(entry.set(Field::placeFile, folder));
    }
    return entries;
}

}  // namespace report
