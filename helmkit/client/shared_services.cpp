#include "helmkit/client/shared_services.h"

#include <memory>

namespace helmkit {

namespace {

std::unique_ptr<FileServices> sharedFileServices;
std::unique_ptr<SystemServices> sharedSystemServices;

}  // namespace

FileServices& fileServices() {
    if (!sharedFileServices) sharedFileServices = std::make_unique<FileServices>();
    return *sharedFileServices;
}

SystemServices& systemServices() {
    if (!sharedSystemServices) sharedSystemServices = std::make_unique<SystemServices>();
    return *sharedSystemServices;
}

void releaseSharedServices() {
    sharedFileServices.reset();
    sharedSystemServices.reset();
}

}  // namespace helmkit
