// Registry data that no well-meaning program writes, with what is to be made of it: by hand from the rules.
#pragma once

#include <string>
#include <vector>

#include "win32/base/platform.h"

struct HostileData {
    std::string what;
    DWORD type;
    std::string bytes;
    std::wstring text;  // where a string is wanted; empty for every other type
    std::wstring raw;   // where any type is read (custom places)
    std::wstring file;  // that the command `text` starts; there is no such file
    bool isLarge = false;
};

// Distinct in `what`. The variable QUILLON_LOOP must name itself: `%QUILLON_LOOP%`.
const std::vector<HostileData>& hostileData();
