// The smallest program file with a string table, for readers of such files.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// Each block of strings by its number, language and bytes.
struct StringBlock {
    uint32_t number;
    uint16_t language;
    std::string bytes;
};

// A block's bytes: each string behind its length.
inline std::string blockBytes(const std::vector<std::wstring>& strings) {
    std::string bytes;
    auto add = [&](wchar_t unit) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8 & 0xFF);
    };
    for (const std::wstring& text : strings) {
        add(static_cast<wchar_t>(text.size()));
        for (wchar_t unit : text) add(unit);
    }
    return bytes;
}

class ProgramImage {
  public:
    explicit ProgramImage(const std::vector<StringBlock>& blocks, bool is64Bit = false) {
        const size_t optionalSize = is64Bit ? 240 : 224;
        const uint32_t headers = static_cast<uint32_t>(64 + 24 + optionalSize + 40);
        std::string resources = tree(blocks);
        text("MZ", 64);
        put(0x3C, 64);
        text(std::string("PE\0\0", 4), 24);
        put(64 + 6, 1, 2);
        put(64 + 20, static_cast<uint32_t>(optionalSize), 2);
        text("", optionalSize);
        const size_t optional = 64 + 24, directories = optional + (is64Bit ? 112 : 96);
        put(optional, is64Bit ? 0x20B : 0x10B, 2);
        put(directories - 4, 16);
        put(directories + 16, address);
        put(directories + 20, static_cast<uint32_t>(resources.size()));
        text(".rsrc", 40);
        const size_t section = optional + optionalSize;
        put(section + 8, static_cast<uint32_t>(resources.size()));
        put(section + 12, address);
        put(section + 16, static_cast<uint32_t>(resources.size()));
        put(section + 20, headers);
        bytes += resources;
    }

    std::string bytes;

  private:
    static constexpr uint32_t address = 0x2000;

    void text(const std::string& part, size_t size) {
        bytes += part;
        bytes.append(size - part.size(), '\0');
    }
    void put(size_t at, uint32_t number, size_t size = 4) { store(bytes, at, number, size); }
    static void store(std::string& to, size_t at, uint32_t number, size_t size = 4) {
        for (size_t i = 0; i < size; ++i) to[at + i] = static_cast<char>(number >> 8 * i);
    }
    static std::string directory(const std::vector<std::pair<uint32_t, uint32_t>>& entries) {
        std::string made(16 + 8 * entries.size(), '\0');
        store(made, 14, static_cast<uint32_t>(entries.size()), 2);
        for (size_t i = 0; i < entries.size(); ++i) {
            store(made, 16 + 8 * i, entries[i].first);
            store(made, 20 + 8 * i, entries[i].second);
        }
        return made;
    }
    // Type 6, below it a directory for each block, with one language in each; then descriptions and blocks.
    static std::string tree(const std::vector<StringBlock>& blocks) {
        const uint32_t below = 0x80000000, count = static_cast<uint32_t>(blocks.size());
        const uint32_t numbers = 24, languages = numbers + 16 + 8 * count,
                       descriptions = languages + 24 * count;
        std::string made = directory({{6, below | numbers}});
        std::vector<std::pair<uint32_t, uint32_t>> entries;
        for (uint32_t i = 0; i < count; ++i)
            entries.push_back({blocks[i].number, below | (languages + 24 * i)});
        made += directory(entries);
        for (uint32_t i = 0; i < count; ++i) made += directory({{blocks[i].language, descriptions + 16 * i}});
        std::string described(16 * count, '\0'), data;
        for (uint32_t i = 0; i < count; ++i) {
            store(described, 16 * i,
                  address + descriptions + 16 * count + static_cast<uint32_t>(data.size()));
            store(described, 16 * i + 4, static_cast<uint32_t>(blocks[i].bytes.size()));
            data += blocks[i].bytes;
        }
        return made + described + data;
    }
};
