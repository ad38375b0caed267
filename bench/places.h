// The eighteen special places, all held.
#pragma once

#include <string>
#include <vector>

#include "bench/entries.h"

namespace bench {

// The registry's part of them. `folder` serves as the startup folder of the computer and of the user.
std::vector<Value> placeValues(const std::wstring& folder);

// win.ini with a line of each kind at its end, and other lines before them up to that many bytes.
std::string winIni(size_t bytes);
std::string systemIni();

}  // namespace bench
