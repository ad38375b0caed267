#include "report/collect.h"

#include <algorithm>
#include <memory>

#include "build_settings.h"
#include "report/iso_time.h"
#include "report/place_entries.h"
#include "report/startup_folder.h"
#include "report/unreadable.h"
#include "startup/known_good_image_paths.h"
#include "startup/special_places.h"
#include "startup/ucOther.h"
#include "startup/ucRun.h"
#include "startup/ucServices.h"
#include "startup/ucWinlogon.h"
#include "win32/files/file_search.h"
#include "win32/system/desktop.h"
#include "win32/system/identity.h"
#include "win32/system/system.h"
#include "win32/system/universal_time.h"

namespace report {

namespace {

using startup::RegistryValueName;
using startup::StartupItem;

// How the entries of a category become those of the report.
struct Source {
    const wchar_t* name;
    std::unique_ptr<startup::Category> (*make)(const Options& options);
    RegistryValueName (*commandOf)(const StartupItem& item);  // null where an entry is a special place
};

template <class Category>
std::unique_ptr<startup::Category> made(const Options&) {
    return std::make_unique<Category>();
}

std::unique_ptr<startup::Category> madeServices(const Options& options) {
    using Standard = startup::ucServices::Standard;
    return std::make_unique<startup::ucServices>(options.all ? Standard::listed : Standard::skipped);
}

const Source sources[] = {
    {L"run", made<startup::ucRun>,
     [](const StartupItem& item) {
         return RegistryValueName{item.hive(), item.keyPath(), item.valueName()};
     }},
    {L"winlogon", made<startup::ucWinlogon>,
     [](const StartupItem& item) { return libraryOf(item.entryName()); }},
    {L"custom", made<startup::ucOther>, nullptr},
    {L"services", madeServices, [](const StartupItem& item) { return imagePathOf(item.entryName()); }},
};

const Source& sourceNamed(const std::wstring& category) {
    const Source* source = sources;
    while (category != source->name) ++source;
    return *source;
}

std::wstring stateOf(const Entry& entry, const Source& source, const StartupItem& item) {
    if (source.make == madeServices && startup::IsKnownGoodImagePath(entry.text(Field::command)))
        return state::standard;
    return startup::Category::isProtected(item) ? state::protectedEntry : state::ordinary;
}

Entry rowEntry(Gathering& gathering, const Source& source, const StartupItem& item) {
    Entry entry;
    entry.set(Field::category, source.name).set(Field::kind, kind::entry).set(Field::name, item.name());
    const RegistryValueName value = source.commandOf(item);
    setValue(entry, value);
    setCommand(entry, gathering.registry, value);
    entry.set(Field::state, stateOf(entry, source, item)).setIfAny(Field::maker, item.manufacturer());
    gathering.facts.describe(entry, item.file());
    return entry;
}

void append(std::vector<Entry>& entries, std::vector<Entry> more) {
    entries.insert(entries.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

// Folders that nobody may look into are empty to the window, which does not list them.
void appendHiddenFolders(Gathering& gathering, const std::vector<StartupItem>& items,
                         std::vector<Entry>& entries) {
    LONG number = 0;
    for (const startup::SpecialPlace& place : startup::specialPlaces()) {
        ++number;
        const bool isListed = std::any_of(items.begin(), items.end(),
                                          [&](const StartupItem& item) { return item.place() == number; });
        if (place.kind == startup::PlaceKind::startupFolder && !isListed)
            append(entries, startupFolderFiles(gathering, place));
    }
}

void collectCategory(Gathering& gathering, const Source& source, const Options& options,
                     std::vector<Entry>& entries) {
    FailureLog log;
    const std::vector<StartupItem> items = source.make(options)->EnumItems(log.logger()).items();
    for (const StartupItem& item : items) {
        if (source.commandOf) {
            entries.push_back(rowEntry(gathering, source, item));
        } else {
            append(entries, placeEntries(gathering, item));
        }
    }
    if (!source.commandOf) appendHiddenFolders(gathering, items, entries);
    append(entries, unreadablePlaces(gathering, source.name, log.taken()));
}

Header headerOf(const Options& options) {
    const win32::OsVersion windows = win32::osVersion();
    return {
        .version = settings::versionMajor + L'.' + settings::versionMinor + L'.' + settings::versionRevision,
        .computer = win32::computerName(),
        .user = win32::userName(),
        .time = isoTime(win32::unixTime(win32::universalTime(win32::desktop().localTime()))),
        .windows = windows.version + (windows.servicePack.empty() ? L"" : L" ") + windows.servicePack,
        .categories = options.categories,
        .all = options.all,
        .hash = options.hash};
}

}  // namespace

Report collect(const Options& options) {
    Report report = {headerOf(options), {}};
    Gathering gathering(options.hash);
    for (const std::wstring& category : options.categories)
        collectCategory(gathering, sourceNamed(category), options, report.entries);
    return report;
}

}  // namespace report
