// The one shared instance of each service that keeps no state. Made on first use and kept for the run.
#pragma once

#include "helmkit/client/file_services.h"
#include "helmkit/client/system_services.h"

namespace helmkit {

FileServices& fileServices();
SystemServices& systemServices();

// Releases both; called before COM ends.
void releaseSharedServices();

}  // namespace helmkit
