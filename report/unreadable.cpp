#include "report/unreadable.h"

#include <algorithm>

#include "startup/ini_files.h"
#include "startup/registry_places.h"
#include "startup/special_places.h"

namespace report {

namespace {

using startup::RegistryValueName;

// Asks the places of one category and keeps those that answer with an error.
class Probe {
  public:
    Probe(Gathering& gathering, const std::wstring& category) : gathering_(gathering), category_(category) {}

    void valuesOf(const RegistryKeyName& key) {
        orUnreadable(found, category_, key, [&] {
            for (const std::wstring& name : gathering_.registry.EnumValues(key.hive, key.keyPath))
                value({key.hive, key.keyPath, name});
        });
    }
    void subkeysOf(const RegistryKeyName& key, RegistryValueName (*commandOf)(const std::wstring& subkey)) {
        orUnreadable(found, category_, key, [&] {
            for (const std::wstring& subkey : gathering_.registry.EnumSubkeys(key.hive, key.keyPath))
                value(commandOf(subkey));
        });
    }
    void value(const RegistryValueName& value) {
        ask([&](Entry& entry) { setValue(entry, value); },
            [&] { gathering_.registry.ReadValue(value.hive, value.keyPath, value.valueName); });
    }
    void place(const startup::SpecialPlace& place) {
        if (place.kind == startup::PlaceKind::iniLine) {
            iniFile(gathering_.folders.winDir + place.location, place.name);
        } else if (place.kind == startup::PlaceKind::runOnceEx) {
            orUnreadable(found, category_, {place.hive, place.location},
                         [&] { gathering_.registry.EnumSubkeys(place.hive, place.location); });
        } else {
            value({place.hive, place.location, place.name});
        }
    }

    std::vector<Entry> found;

  private:
    void iniFile(const std::wstring& file, const std::wstring& line) {
        ask([&](Entry& entry) { entry.set(Field::placeFile, file).set(Field::line, line); },
            [&] { startup::IniFiles().startupLinesOf(file); });
    }
    template <class SetPlace, class Body>
    void ask(SetPlace setPlace, Body body) {
        try {
            body();
        } catch (const win32::Error& error) {
            Entry entry = unreadable(category_, error.description);
            setPlace(entry);
            found.push_back(std::move(entry));
        }
    }

    Gathering& gathering_;
    std::wstring category_;
};

std::vector<Entry> placesWithErrors(Gathering& gathering, const std::wstring& category) {
    Probe probe(gathering, category);
    if (category == L"run") {
        for (const startup::RunKey& key : startup::runKeys) probe.valuesOf({key.hive, key.keyPath});
        for (LONG hive : startup::policyHives) probe.valuesOf({hive, startup::policyKeyPath});
    } else if (category == L"winlogon") {
        probe.subkeysOf({helmkit::HKLM, startup::notifyKeyPath}, libraryOf);
    } else if (category == L"services") {
        probe.subkeysOf({helmkit::HKLM, startup::servicesKeyPath}, imagePathOf);
    } else {
        for (const startup::SpecialPlace& place : startup::specialPlaces()) probe.place(place);
    }
    return std::move(probe.found);
}

}  // namespace

Entry unreadable(const std::wstring& category, const std::wstring& error) {
    return Entry().set(Field::category, category).set(Field::kind, kind::unreadable).set(Field::error, error);
}

std::vector<Entry> unreadablePlaces(Gathering& gathering, const std::wstring& category,
                                    const std::vector<Failure>& failures) {
    if (failures.empty()) return {};
    std::vector<Entry> entries = placesWithErrors(gathering, category), unplaced;
    std::vector<std::wstring> errors;
    for (const Entry& entry : entries) errors.push_back(entry.text(Field::error));
    for (const Failure& failure : failures) {
        const auto known = std::find(errors.begin(), errors.end(), failure.text);
        if (known == errors.end()) {
            unplaced.push_back(unreadable(category, failure.source + L": " + failure.text));
        } else {
            errors.erase(known);
        }
    }
    entries.insert(entries.end(), unplaced.begin(), unplaced.end());
    return entries;
}

}  // namespace report
