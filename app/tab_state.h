// The listed entries in the log.
#pragma once

#include <vector>

#include "helmkit/client/logger.h"
#include "startup/category.h"

namespace app {

// Writes a line for each row: %1 is its text, %2 its second column, %3 the related file. What fails is thrown
// and ends the rows.
void logRows(const helmkit::Logger& logger, const wchar_t* logTemplate,
             const std::vector<startup::ListedRow>& rows);

}  // namespace app
