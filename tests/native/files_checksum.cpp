#include <doctest/doctest.h>

#include <vector>

#include "files/checksum.h"

namespace {

int32_t of(const std::vector<uint8_t>& bytes) {
    return files::checksum(bytes.data(), bytes.size());
}

}  // namespace

TEST_CASE("the checksum rotates 31 bits to the right and adds") {
    CHECK(of({}) == 0);
    CHECK(of({0x41}) == 65);
    CHECK(of({1, 1}) == (1 << 30) + 1);
    CHECK(of({0xFF, 0xFF}) == (1 << 30) + 127 + 255);
    CHECK(of({2, 0, 0}) == 1 << 30);
}

TEST_CASE("a sum over 2^31 - 1 leaves the value as it was") {
    // Each byte fills the low eight bits, until all 31 are set.
    std::vector<uint8_t> bytes;
    int32_t value = 0;
    while (value != 0x7FFFFFFF) {
        int32_t rotated = value / 2 + (value % 2) * (1 << 30);
        bytes.push_back(static_cast<uint8_t>(0xFF - (rotated & 0xFF)));
        value = of(bytes);
        REQUIRE(bytes.size() < 64);
    }
    bytes.push_back(0);
    CHECK(of(bytes) == 0x7FFFFFFF);
    bytes.push_back(1);
    CHECK(of(bytes) == 0x7FFFFFFF);
    bytes.push_back(0xFF);
    CHECK(of(bytes) == 0x7FFFFFFF);
}

TEST_CASE("blocks of bytes give what single steps give, also where steps are left out") {
    uint32_t state = 7;
    int leftOut = 0;
    std::vector<uint8_t> bytes;
    int32_t expected = 0;
    while (bytes.size() < 2000) {
        state = state * 1664525 + 1013904223;
        const int64_t rotated = expected / 2 + (expected % 2) * (int64_t{1} << 30);
        // Most bytes fill the low bits, so that sums soon pass the limit; some are any.
        const bool fills = state >> 28 != 0;
        bytes.push_back(static_cast<uint8_t>(fills ? 0xFF - (rotated & 0xFF) : state >> 16));
        const int64_t next = rotated + bytes.back();
        next <= 0x7FFFFFFF ? expected = static_cast<int32_t>(next) : ++leftOut;
        REQUIRE(of(bytes) == expected);
    }
    CHECK(leftOut > 20);
}
