// The files of a startup folder.
#pragma once

#include <vector>

#include "report/entry.h"
#include "report/gathering.h"
#include "startup/special_places.h"

namespace report {

// The files that the window counts, in the file system's order: neither hidden nor of the system. A folder
// that is there but cannot be looked into is an entry that says so.
std::vector<Entry> startupFolderFiles(Gathering& gathering, const startup::SpecialPlace& place);

}  // namespace report
