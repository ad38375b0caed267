#include "report/run_once_ex.h"

#include "report/registry_places.h"
#include "report/run_once_ex_command.h"
#include "report/unreadable.h"

namespace report {

namespace {

// Sections, and the keys below them ("Depend"). Links could lead in circles, so there is an end.
const int deepest = 2;

Entry valueEntry(Gathering& gathering, const startup::RegistryValueName& value) {
    Entry entry;
    entry.set(Field::category, L"custom").set(Field::kind, kind::content);
    setValue(entry, value);
    setCommand(entry, gathering.registry, value);
    const std::wstring file =
        gathering.commands.resolveValue(gathering.registry, value.hive, value.keyPath, value.valueName,
                                        runOnceExCommand(entry.text(Field::command)));
    const startup::FileDescription& description = gathering.descriptions.of(file);
    entry.set(Field::name, description.description.value_or(value.valueName));
    entry.set(Field::state, state::ordinary).setIfAny(Field::maker, description.company);
    gathering.facts.describe(entry, file);
    return entry;
}

void addBelow(Gathering& gathering, const RegistryKeyName& key, int depth, std::vector<Entry>& entries) {
    auto& registry = gathering.registry;
    orUnreadable(entries, L"custom", key, [&] {
        for (const std::wstring& subkey : registry.EnumSubkeys(key.hive, key.keyPath)) {
            const RegistryKeyName below = {key.hive, key.keyPath + L'\\' + subkey};
            orUnreadable(entries, L"custom", below, [&] {
                for (const std::wstring& name : registry.EnumValues(below.hive, below.keyPath))
                    entries.push_back(valueEntry(gathering, {below.hive, below.keyPath, name}));
            });
            if (depth < deepest) addBelow(gathering, below, depth + 1, entries);
        }
    });
}

}  // namespace

std::vector<Entry> runOnceExValues(Gathering& gathering, const startup::SpecialPlace& place) {
    std::vector<Entry> entries;
    addBelow(gathering, {place.hive, place.location}, 1, entries);
    return entries;
}

}  // namespace report
