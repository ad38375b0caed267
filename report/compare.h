// The difference between two reports. Calls nothing of Windows.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "report/entry.h"

namespace report {

struct Change {
    enum class Kind { added, removed, changed };
    Kind kind;
    Entry before, after;        // the one that there is not stays empty
    std::vector<Field> fields;  // those that differ, of a changed entry
};

struct Difference {
    Header before, after;
    std::vector<Change> changes;  // in the order of the new report, what was removed after it
};

// The two cannot be compared; `text` says why.
struct IncomparableReports : std::runtime_error {
    explicit IncomparableReports(std::wstring text)
        : std::runtime_error("incomparable"), text(std::move(text)) {}
    std::wstring text;
};

// Entries are the same when all fields of their place are; where several are, the first is that of the first
// and so on. Only the categories of the new report are compared: an old one that lacks one of them is
// incomparable. What only one of the two was asked for makes no difference: a hash, and a standard service.
Difference compareReports(const Report& before, const Report& after);

}  // namespace report
