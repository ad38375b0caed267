#include "files/checksum.h"

namespace files {

int32_t checksum(const uint8_t* bytes, size_t size) {
    const uint32_t largest = 0x7FFFFFFF;
    uint32_t h = 0;
    for (size_t i = 0; i < size; ++i) {
        uint32_t next = (h >> 1) + ((h & 1) << 30) + bytes[i];
        if (next <= largest) h = next;
    }
    return static_cast<int32_t>(h);
}

}  // namespace files
