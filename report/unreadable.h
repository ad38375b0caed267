// Places that could not be read, as entries that say so.
#pragma once

#include <string>
#include <vector>

#include "report/failure_log.h"
#include "report/gathering.h"
#include "report/registry_places.h"

namespace report {

Entry unreadable(const std::wstring& category, const std::wstring& error);

// Runs `body`; what it throws becomes an entry of that key.
template <class Body>
void orUnreadable(std::vector<Entry>& entries, const std::wstring& category, const RegistryKeyName& key,
                  Body body) {
    try {
        body();
    } catch (const win32::Error& error) {
        Entry entry = unreadable(category, error.description);
        setKey(entry, key);
        entries.push_back(std::move(entry));
    }
}

// The places that a category was told it cannot read. An enumeration's errors do not tell the hive or the
// value, so the places are asked once more, for their errors alone; an error that comes from none of them any
// more is an entry without a place.
std::vector<Entry> unreadablePlaces(Gathering& gathering, const std::wstring& category,
                                    const std::vector<Failure>& failures);

}  // namespace report
