// All that stands in the hives at one time, so that a test can say what a deletion may have changed.
#pragma once

#include <map>
#include <string>

#include "tests/support/reg_reader.h"
#include "win32/base/platform.h"

struct StoredValue {
    DWORD type = 0;
    std::string data;
    bool operator==(const StoredValue&) const = default;
};

using StoredKey = std::map<std::wstring, StoredValue>;

// Keys by their full path with the root's long name. A link is a key of its own, with nothing below it.
struct Snapshot {
    std::map<std::wstring, StoredKey> keys;
    bool operator==(const Snapshot&) const = default;

    // Takes a key away with all that is below it.
    void erase(const std::wstring& path);
    // Only what stands in this key and below it.
    Snapshot below(const std::wstring& path) const;
};

// What HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER of this process hold, by the registry's native calls.
Snapshot snapshot();

// What an export holds.
Snapshot snapshotOf(const reg::File& file);
