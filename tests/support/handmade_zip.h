// Archives put together by hand, as other programs make them.
#pragma once

#include <string>
#include <vector>

#include "tests/support/zip_listing.h"

struct HandmadeEntry {
    std::string name, content;
    unsigned time = 0x5D752000;  // of the format: 2026-11-21 04:00:00, local
    std::string extra = {};      // extra fields, in both places
};

// The entries are stored as they are, not compressed.
inline std::string handmadeZip(const std::vector<HandmadeEntry>& entries) {
    const auto number = [](size_t value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> 8 * i);
        return text;
    };
    std::string files, directory;
    for (const HandmadeEntry& entry : entries) {
        const std::string facts = number(20, 2) + number(0, 2) + number(0, 2) + number(entry.time, 4) +
                                  number(crcOf(entry.content), 4) + number(entry.content.size(), 4) +
                                  number(entry.content.size(), 4) + number(entry.name.size(), 2) +
                                  number(entry.extra.size(), 2);
        directory += "PK\1\2" + number(20, 2) + facts + number(0, 10) + number(files.size(), 4) + entry.name +
                     entry.extra;
        files += "PK\3\4" + facts + entry.name + entry.extra + entry.content;
    }
    return files + directory + "PK\5\6" + number(0, 4) + number(entries.size(), 2) +
           number(entries.size(), 2) + number(directory.size(), 4) + number(files.size(), 4) + number(0, 2);
}
