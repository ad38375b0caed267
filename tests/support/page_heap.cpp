#include "tests/support/page_heap.h"

#include <cstring>

#include "win32/base/platform.h"

namespace page_heap {

namespace {

const size_t page = 4096, alignment = 16;
const char mark = '\xA7';

size_t rounded(size_t size, size_t to) {
    return (size + to - 1) / to * to;
}

MEMORY_BASIC_INFORMATION regionOf(const void* block) {
    MEMORY_BASIC_INFORMATION region = {};
    ::VirtualQuery(block, &region, sizeof region);
    return region;
}

}  // namespace

bool isOn() {
    static const bool on = sizeof(void*) == 8 && std::strstr(::GetCommandLineA(), "--page-heap");
    return on;
}

void* allocate(size_t size) {
    const size_t room = rounded(size ? size : 1, alignment), pages = rounded(room, page);
    // Behind the pages there is one that may not be touched.
    auto* begin = static_cast<char*>(::VirtualAlloc(nullptr, pages + page, MEM_RESERVE, PAGE_NOACCESS));
    if (!begin || !::VirtualAlloc(begin, pages, MEM_COMMIT, PAGE_READWRITE)) return nullptr;
    char* block = begin + pages - room;
    std::memset(block + size, mark, room - size);
    return block;
}

size_t sizeOf(void* block) {
    return regionOf(block).RegionSize;
}

void checkEnd(const void* block, size_t size) {
    for (size_t at = size; at % alignment != 0; ++at) {
        if (static_cast<const char*>(block)[at] != mark)
            ::RaiseException(STATUS_HEAP_CORRUPTION, EXCEPTION_NONCONTINUABLE, 0, nullptr);
    }
}

void release(void* block) {
    ::VirtualFree(regionOf(block).AllocationBase, 0, MEM_RELEASE);
}

}  // namespace page_heap
