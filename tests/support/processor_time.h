// How long this process has worked, whatever else the machine had to do meanwhile.
#pragma once

#include <windows.h>

inline DWORD milliseconds(const FILETIME& time) {
    return static_cast<DWORD>(
        (static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime) / 10000);
}

inline DWORD processorTime() {
    FILETIME made{}, ended{}, kernel{}, user{};
    ::GetProcessTimes(::GetCurrentProcess(), &made, &ended, &kernel, &user);
    return milliseconds(kernel) + milliseconds(user);
}
