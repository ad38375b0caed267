#include "files/checksum.h"

namespace files {

namespace {

const uint32_t largest = 0x7FFFFFFF;

uint32_t step(uint32_t h, uint8_t byte) {
    return (h >> 1) + ((h & 1) << 30) + byte;
}

uint32_t checkedSteps(uint32_t h, const uint8_t* bytes, size_t count) {
    for (size_t i = 0; i < count; ++i) {
        const uint32_t next = step(h, bytes[i]);
        if (next <= largest) h = next;
    }
    return h;
}

}  // namespace

// A step is hardly ever left out, so a block is taken at once and again with checks only where some sum was
// too large: waiting for the check at every byte would take half as long again.
int32_t checksum(const uint8_t* bytes, size_t size) {
    const size_t block = 16;
    uint32_t h = 0;
    for (; size >= block; bytes += block, size -= block) {
        uint32_t next = h, allSums = 0;
        for (size_t i = 0; i < block; ++i) allSums |= next = step(next, bytes[i]);
        h = allSums <= largest ? next : checkedSteps(h, bytes, block);
    }
    return static_cast<int32_t>(checkedSteps(h, bytes, size));
}

}  // namespace files
