// What the gathering of one report works with.
#pragma once

#include "files/windows_folders.h"
#include "helmkit/client/registry_access.h"
#include "report/entry.h"
#include "report/file_facts.h"
#include "startup/command_resolver.h"
#include "startup/file_descriptions.h"

namespace report {

struct Gathering {
    explicit Gathering(bool hash) : facts(hash) {}

    const files::WindowsFolders folders = files::GetWindowsFolders();
    helmkit::RegistryAccess registry;
    startup::CommandResolver commands;
    startup::FileDescriptions descriptions{commands};
    FileFacts facts;
};

}  // namespace report
