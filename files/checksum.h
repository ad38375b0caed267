// The checksum that tells one build of a file from another.
#pragma once

#include <cstddef>
#include <cstdint>

namespace files {

// Over `size` bytes in order, from h = 0: h = h / 2 + (h % 2) * 2^30 + byte, a 31-bit rotation to the right
// and an addition. A step whose sum exceeds 2^31 - 1 is left out.
int32_t checksum(const uint8_t* bytes, size_t size);

}  // namespace files
