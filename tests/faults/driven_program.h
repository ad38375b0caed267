// The real program, started in a Windows of a test's own with tests/faults/injected.cpp in it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "win32/base/platform.h"

struct DrivenRun {
    DWORD exitCode = STILL_ACTIVE;  // stays so when it had to be ended
    size_t calls = 0;
    std::string failed;  // the function that failed
    std::vector<std::string> boxes, resources;
};

struct Driving {
    std::wstring folder;   // the program's
    std::wstring windows;  // the Windows folder
    size_t number = 0;     // of the call that fails
    DWORD error = 0;
    std::pair<size_t, size_t> rounds;
    DWORD patience = 120000;  // milliseconds
};

DrivenRun drive(const Driving& driving);
