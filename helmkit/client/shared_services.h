// The end of the shared services.
#pragma once

namespace helmkit {

// Releases what fileServices() and systemServices() have made; called before COM ends.
void releaseSharedServices();

}  // namespace helmkit
