// Values in the keys that a backup exports.
#pragma once

#include <vector>

#include "bench/entries.h"

namespace bench {

struct ExportedKey {
    HKEY hive;
    std::wstring path;
    int percent;  // of all values
    bool isDeep;  // its values stand in subkeys, ten in each
};

// The keys that are exported with everything below them.
const std::vector<ExportedKey>& exportedKeys();

// Strings, one in twenty with a type of another notation, spread over the keys.
void storeExportedValues(int count);

}  // namespace bench
