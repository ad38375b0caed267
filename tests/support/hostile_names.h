// Names of values and keys that no well-meaning program gives.
#pragma once

#include <string>
#include <vector>

struct HostileName {
    const char* what;
    std::wstring name;
    bool canBeDeleted = true;   // false where a NUL makes it mean another name to all but the native calls
    bool canBeExported = true;  // false where no line of an export can carry it
    bool isOnlyOfValues = false;
};

// Each differs from the others in more than letter case.
const std::vector<HostileName>& hostileNames();
