// The report of this machine.
#pragma once

#include "report/entry.h"
#include "report/options.h"

namespace report {

// Reads the chosen categories. A place that cannot be read is an entry that says so; what keeps a category
// from being listed at all is thrown.
Report collect(const Options& options);

}  // namespace report
