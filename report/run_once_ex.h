// What stands below a RunOnceEx key.
#pragma once

#include <vector>

#include "report/entry.h"
#include "report/gathering.h"
#include "startup/special_places.h"

namespace report {

// Every value of its sections and of the keys right below them, in the registry's order. A key that cannot be
// read is an entry that says so.
std::vector<Entry> runOnceExValues(Gathering& gathering, const startup::SpecialPlace& place);

}  // namespace report
