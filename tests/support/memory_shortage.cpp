#include "tests/support/memory_shortage.h"

#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

struct Shortage {
    size_t largest = SIZE_MAX, failing = 0, count = 0;
    bool wasFelt = false;

    bool refuses(size_t size) {
        ++count;
        const bool isRefused = size > largest || (failing && count >= failing);
        wasFelt |= isRefused;
        return isRefused;
    }
};

Shortage shortage;
size_t allocated = 0, peak = 0;

}  // namespace

void* operator new(size_t size) {
    void* memory = shortage.refuses(size) ? nullptr : std::malloc(size ? size : 1);
    if (!memory) throw std::bad_alloc();
    allocated += ::_msize(memory);
    peak = std::max(peak, allocated);
    return memory;
}

void operator delete(void* memory) noexcept {
    if (memory) allocated -= ::_msize(memory);
    std::free(memory);
}

void operator delete(void* memory, size_t) noexcept {
    operator delete(memory);
}

MemoryShortage::MemoryShortage(size_t largest, size_t failing) {
    shortage = {largest, failing, 0, false};
}

MemoryShortage::~MemoryShortage() {
    shortage = {};
}

bool MemoryShortage::wasFelt() const {
    return shortage.wasFelt;
}

MemoryPeak::MemoryPeak() : before_(allocated) {
    peak = allocated;
}

size_t MemoryPeak::bytes() const {
    return peak - before_;
}
