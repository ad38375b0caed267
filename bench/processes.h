// Programs that the benchmark starts.
#pragma once

#include <string>

#include "win32/base/handle.h"

namespace bench {

struct Process {
    win32::OwnedObject handle;
    DWORD id = 0;

    explicit Process(std::wstring commandLine);
    // Waits for its end and gives its exit code.
    DWORD exitCode() const;
};

// A file beside the benchmark's own.
std::wstring beside(const std::wstring& name);

}  // namespace bench
