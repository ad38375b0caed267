#include "tests/support/memory_shortage.h"

#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>

#include "tests/support/page_heap.h"

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

size_t sizeOf(void* memory) {
    return page_heap::isOn() ? page_heap::sizeOf(memory) : ::_msize(memory);
}

}  // namespace

void* operator new(size_t size) {
    void* memory = shortage.refuses(size) ? nullptr
                   : page_heap::isOn()    ? page_heap::allocate(size)
                                          : std::malloc(size ? size : 1);
    if (!memory) throw std::bad_alloc();
    allocated += sizeOf(memory);
    peak = std::max(peak, allocated);
    return memory;
}

void operator delete(void* memory) noexcept {
    if (!memory) return;
    allocated -= sizeOf(memory);
    page_heap::isOn() ? page_heap::release(memory) : std::free(memory);
}

void operator delete(void* memory, size_t size) noexcept {
    if (memory && page_heap::isOn()) page_heap::checkEnd(memory, size);
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
