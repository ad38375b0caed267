#include "win32/files/string_table.h"

#include <algorithm>
#include <string_view>

#include "win32/base/utf16_bytes.h"

namespace win32 {

namespace {

const uint32_t stringTables = 6;  // the resource type
const uint32_t isDirectory = 0x80000000;
const size_t stringsInBlock = 16;
// Sixteen strings of the greatest length that there is.
const size_t longestBlock = stringsInBlock * 2 * 0x10000;
const size_t longestString = 4095;

uint32_t numberAt(std::string_view bytes, size_t offset) {
    return unitAt(bytes, offset) | static_cast<uint32_t>(unitAt(bytes, offset + 2)) << 16;
}

struct Section {
    uint32_t address, size;  // as loaded, of what the file has
    uint32_t offset;         // in the file
};

// What a loaded file would have at its addresses, from the file itself. Empty where anything asked for is not
// all there.
class ProgramFile {
  public:
    explicit ProgramFile(const ReadBytes& read) : read_(read) { readHeaders(); }

    uint32_t resources() const { return resources_; }

    std::string bytesAt(uint64_t address, size_t count) const {
        for (const Section& section : sections_) {
            const uint64_t end = uint64_t{section.address} + section.size;
            if (address >= section.address && address + count <= end)
                return exactly(section.offset + (address - section.address), count);
        }
        return {};
    }

  private:
    std::string exactly(uint64_t offset, size_t count) const {
        std::string bytes = read_(offset, count);
        return bytes.size() == count ? bytes : std::string();
    }

    void readHeaders() {
        const size_t dosHeader = 64, fileHeader = 24;
        const std::string dos = exactly(0, dosHeader);
        if (dos.compare(0, 2, "MZ") != 0) return;
        const uint64_t at = numberAt(dos, 0x3C);
        const std::string file = exactly(at, fileHeader);
        if (file.compare(0, 4, std::string_view("PE\0\0", 4)) != 0) return;
        const size_t optionalSize = unitAt(file, 20);
        readDirectory(exactly(at + fileHeader, optionalSize));
        readSections(at + fileHeader + optionalSize, unitAt(file, 6));
    }

    // The third of the directories is the resources'.
    void readDirectory(const std::string& optional) {
        const bool is64Bit = optional.compare(0, 2, "\x0B\x02") == 0;
        const size_t directories = is64Bit ? 112 : 96, entry = directories + size_t{2} * 8;
        if (optional.size() < entry + 8 || numberAt(optional, directories - 4) < 3) return;
        resources_ = numberAt(optional, entry);
    }

    void readSections(uint64_t at, size_t count) {
        const size_t headerSize = 40;
        const std::string headers = exactly(at, count * headerSize);
        for (size_t header = 0; header < headers.size(); header += headerSize) {
            sections_.push_back({numberAt(headers, header + 12), numberAt(headers, header + 16),
                                 numberAt(headers, header + 20)});
        }
    }

    const ReadBytes& read_;
    uint32_t resources_ = 0;
    std::vector<Section> sections_;
};

struct Entry {
    uint32_t id, offset;
};

// The numbered entries of a directory, named ones left out.
std::vector<Entry> entriesOf(const ProgramFile& file, uint64_t directory) {
    const size_t headerSize = 16, entrySize = 8;
    std::vector<Entry> entries;
    const std::string header = file.bytesAt(directory, headerSize);
    if (header.empty()) return entries;
    const std::string bytes =
        file.bytesAt(directory + headerSize + unitAt(header, 12) * entrySize, unitAt(header, 14) * entrySize);
    for (size_t at = 0; at < bytes.size(); at += entrySize)
        entries.push_back({numberAt(bytes, at), numberAt(bytes, at + 4)});
    return entries;
}

// The directory below another one, none when there is none of that number.
std::optional<uint64_t> below(const ProgramFile& file, uint64_t directory, uint32_t id) {
    for (const Entry& entry : entriesOf(file, directory)) {
        const uint64_t offset = entry.offset & ~isDirectory;
        if (entry.id == id && (entry.offset & isDirectory)) return file.resources() + offset;
    }
    return {};
}

// The bytes of a block of strings as its entry in the tree of languages tells them.
std::string blockOf(const ProgramFile& file, const Entry& language) {
    const size_t descriptionSize = 16;
    if (language.offset & isDirectory) return {};
    const std::string description =
        file.bytesAt(uint64_t{file.resources()} + language.offset, descriptionSize);
    if (description.empty()) return {};
    return file.bytesAt(numberAt(description, 0), std::min<size_t>(numberAt(description, 4), longestBlock));
}

std::optional<std::wstring> stringAt(std::string_view block, size_t position) {
    for (;; --position) {
        if (block.size() < 2) return {};
        const size_t length = unitAt(block, 0);
        block.remove_prefix(2);
        if (length > block.size() / 2) return {};
        if (position == 0) {
            if (length == 0) return {};
            return unitsOf(block.substr(0, 2 * std::min(length, longestString)));
        }
        block.remove_prefix(2 * length);
    }
}

}  // namespace

std::optional<std::wstring> stringOfFile(const ReadBytes& read, unsigned number,
                                         const std::vector<uint16_t>& languages) {
    const ProgramFile file(read);
    const auto tables = below(file, file.resources(), stringTables);
    const auto block =
        tables ? below(file, *tables, static_cast<uint32_t>(number / stringsInBlock + 1)) : std::nullopt;
    if (!block) return {};
    std::vector<Entry> entries = entriesOf(file, *block);
    auto first = entries.begin();
    for (uint16_t language : languages)
        first = std::stable_partition(first, entries.end(), [&](Entry e) { return e.id == language; });
    // A hostile directory may name the same block thousands of times.
    const size_t most = 64;
    for (size_t i = 0; i < entries.size() && i < most; ++i) {
        if (auto text = stringAt(blockOf(file, entries[i]), number % stringsInBlock)) return text;
    }
    return {};
}

}  // namespace win32
