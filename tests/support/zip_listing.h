// The central directory of an archive, read without the library that wrote it.
#pragma once

#include <string>
#include <vector>

#include <doctest/doctest.h>

struct ZipEntry {
    std::string name;
    unsigned flags = 0, method = 0, attributes = 0, system = 0;
    unsigned size = 0, packed = 0, time = 0, crc = 0, extra = 0,
             localExtra = 0;  // `extra`: bytes of extra fields
};

// The sum that the format keeps of a file's contents.
inline unsigned crcOf(const std::string& bytes) {
    unsigned crc = 0xFFFFFFFF;
    for (char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

// Only for archives without comment and below 4 GiB, as the tests make them.
inline std::vector<ZipEntry> entriesOf(const std::string& archive) {
    const auto number = [&](size_t at, int bytes) {
        unsigned value = 0;
        for (int i = bytes; i-- > 0;) value = value << 8 | static_cast<unsigned char>(archive.at(at + i));
        return value;
    };
    const size_t end = archive.size() - 22;
    REQUIRE(archive.size() >= 22);
    REQUIRE(archive.compare(end, 4, "PK\5\6") == 0);
    std::vector<ZipEntry> entries;
    size_t at = number(end + 16, 4);
    for (unsigned left = number(end + 10, 2); left > 0; --left) {
        REQUIRE(archive.compare(at, 4, "PK\1\2") == 0);
        const unsigned length = number(at + 28, 2);
        entries.push_back({archive.substr(at + 46, length), number(at + 8, 2), number(at + 10, 2),
                           number(at + 38, 4), number(at + 5, 1), number(at + 24, 4), number(at + 20, 4),
                           number(at + 12, 4), number(at + 16, 4), number(at + 30, 2),
                           number(number(at + 42, 4) + 28, 2)});
        at += 46 + length + number(at + 30, 2) + number(at + 32, 2);
    }
    return entries;
}
