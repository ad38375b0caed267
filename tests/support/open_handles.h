// How many handles this process has open, and whether many entries have left some.
#pragma once

#include <vector>

#include <doctest/doctest.h>

#include "tests/support/native_registry.h"

inline int openHandles() {
    struct Handle {
        USHORT process, traced;
        BYTE type, attributes;
        USHORT value;
        void* object;
        ULONG access;
    };
    struct Table {
        ULONG count;
        Handle handles[1];
    };
    using Query = NTSTATUS(WINAPI*)(int, void*, ULONG, ULONG*);
    const int handleInformation = 16;
    std::vector<char> room(1 << 22);
    REQUIRE(native<Query>("ZwQuerySystemInformation")(handleInformation, room.data(),
                                                      static_cast<ULONG>(room.size()), nullptr) >= 0);
    const auto& table = *reinterpret_cast<const Table*>(room.data());
    const USHORT own = static_cast<USHORT>(::GetCurrentProcessId());
    int count = 0;
    for (ULONG i = 0; i < table.count; ++i) count += table.handles[i].process == own;
    return count;
}

// Windows itself opens one or two for good on the way; what leaks does it at every entry of a list.
inline void checkNothingLeaked(int before) {
    CHECK(openHandles() <= before + 2);
}
