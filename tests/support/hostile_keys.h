// Keys that are refused, gone, changed or links, and what then becomes of the one entry "victim".
#pragma once

#include <memory>
#include <vector>

#include "tests/support/hostile_ground.h"
#include "tests/support/open_handles.h"
#include "tests/support/restricted_key.h"

struct HostileKeys : HostileGround {
    static inline const HKEY machine = HKEY_LOCAL_MACHINE, user = HKEY_CURRENT_USER;
    std::vector<std::unique_ptr<RestrictedKey>> restricted;

    void restrict(HKEY hive, const std::wstring& key, ACCESS_MASK granted) {
        restricted.push_back(std::make_unique<RestrictedKey>(hive, key, granted));
    }
    static std::wstring namesOf(const std::vector<startup::StartupItem>& items) {
        std::wstring names;
        for (const auto& item : items) names += item.entryName() + L"; ";
        return names;
    }
};

enum class Outcome {
    removed,    // the entry, and nothing else
    refused,    // and nothing is changed
    notListed,  // so that there is nothing to delete
};

// One row of a table; `Ground` is the tab's fixture, which has put a neighbour before and behind it.
template <class Ground>
struct HostileKey {
    const char* what;
    void (*seed)(Ground&);
    const wchar_t* listed;  // the names of all entries in their order
    Outcome outcome;
    void (*change)(Ground&) = nullptr;  // between the refresh and OK
    const wchar_t* logged = nullptr;    // the source of each line of the refresh
};
