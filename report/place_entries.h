// The entries of the special places: the places themselves, and what those hold that the window only counts.
#pragma once

#include <vector>

#include "report/entry.h"
#include "report/gathering.h"
#include "startup/StartupItem.h"

namespace report {

// The row of the window, followed by the values below RunOnceEx or by the files of a startup folder.
std::vector<Entry> placeEntries(Gathering& gathering, const startup::StartupItem& item);

}  // namespace report
