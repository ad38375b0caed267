#include <doctest/doctest.h>

#include <random>

#include "tests/support/program_image.h"
#include "win32/files/string_table.h"

namespace {

std::optional<std::wstring> stringOf(const std::string& file, unsigned number,
                                     const std::vector<uint16_t>& languages = {0x0409}) {
    auto read = [&](uint64_t offset, size_t count) {
        return offset > file.size() ? std::string() : file.substr(static_cast<size_t>(offset), count);
    };
    return win32::stringOfFile(read, number, languages);
}

const std::string block = blockBytes({L"zero", L"", L"two \x416", L"three"});

}  // namespace

TEST_CASE("a string is found by its number in files of both kinds") {
    for (bool is64Bit : {false, true}) {
        const std::string file = ProgramImage({{1, 0x0409, block}, {8, 0, block}}, is64Bit).bytes;
        CHECK(*stringOf(file, 0) == L"zero");
        CHECK(*stringOf(file, 2) == L"two \x416");
        CHECK(*stringOf(file, 115) == L"three");
        for (unsigned number : {1u, 4u, 15u, 16u, 111u, 128u, 0xFFFFu}) CHECK_FALSE(stringOf(file, number));
    }
}

TEST_CASE("a length that leads out of its block gives no string") {
    for (const std::string& bytes : {std::string("\xFF\xFF", 2), std::string("\x02\x00\x41\x00", 4),
                                     std::string("\x00", 1), std::string("\xFE\x7F\x41\x00\x42\x00", 6)}) {
        const std::string file = ProgramImage({{1, 0x0409, bytes}}).bytes + std::string(200000, 'x');
        for (unsigned number : {0u, 1u, 15u}) CHECK_FALSE(stringOf(file, number));
    }
    const std::string longest = ProgramImage({{1, 0, blockBytes({std::wstring(50000, L'x')})}}).bytes;
    CHECK(stringOf(longest, 0)->size() == 4095);
}

TEST_CASE("no cut and no changed byte of a program file leads outside it") {
    const std::string whole = ProgramImage({{1, 0x0409, block}, {2, 0, block}}).bytes;
    for (size_t size = 0; size < whole.size(); ++size) {
        for (unsigned number : {0u, 3u, 19u}) stringOf(whole.substr(0, size), number);
    }
    for (size_t at = 0; at < whole.size(); ++at) {
        for (int byte : {0, 1, 6, 0x7F, 0x80, 0xFF}) {
            std::string changed = whole;
            changed[at] = static_cast<char>(byte);
            for (unsigned number : {0u, 3u, 19u}) stringOf(changed, number);
        }
    }
    std::mt19937 random(11);
    for (int i = 0; i < 20000; ++i) {
        std::string changed = whole;
        for (int n = 0; n < 4; ++n) changed[random() % changed.size()] = static_cast<char>(random());
        stringOf(changed, random() % 40);
    }
}

namespace {

void put(std::string& bytes, uint32_t number, size_t size = 4) {
    for (size_t i = 0; i < size; ++i) bytes += static_cast<char>(number >> 8 * i);
}

struct Part {
    uint32_t address, size, offset;
};

// A program file whose optional header ends with the third directory, with a header for each section and
// bytes behind them.
struct Image {
    std::vector<Part> sections;
    std::string contents;
    uint32_t resources = 0x2000;
    bool is64Bit = false;
    uint32_t directories = 3;
    size_t optionalSize = 0;  // another one than the directories need
    std::string dosMark = "MZ", mark = std::string("PE\0\0", 4);

    uint32_t headersEnd() const { return static_cast<uint32_t>(64 + 24 + optional() + 40 * sections.size()); }
    size_t optional() const { return optionalSize ? optionalSize : is64Bit ? 136 : 120; }
    std::string bytes() const {
        std::string made = dosMark + std::string(58, '\0');
        put(made, 64);
        made += mark + std::string(2, '\0');
        put(made, static_cast<uint32_t>(sections.size()), 2);
        made += std::string(12, '\0');
        put(made, static_cast<uint32_t>(optional()), 2);
        made += std::string(2, '\0');
        std::string header;
        put(header, is64Bit ? 0x20B : 0x10B, 2);
        header.resize(is64Bit ? 108 : 92);
        put(header, directories);
        header.resize(header.size() + 16);
        put(header, resources);
        header.resize(optional());
        made += header;
        for (const Part& part : sections) {
            made += std::string(12, '\0');
            for (uint32_t number : {part.address, part.size, part.offset}) put(made, number);
            made += std::string(16, '\0');
        }
        return made + contents;
    }
};

struct Row {
    uint32_t id, offset;
};
const uint32_t below = 0x80000000;

// A directory of so many named entries, and the numbered ones.
std::string directory(const std::vector<Row>& rows, uint32_t named = 0) {
    std::string made(12, '\0');
    put(made, named, 2);
    put(made, static_cast<uint32_t>(rows.size()), 2);
    // A named entry leads nowhere, wherever it is looked at.
    for (uint32_t i = 0; i < named; ++i) made += std::string(8, '\x7F');
    for (const Row& row : rows) {
        put(made, row.id);
        put(made, row.offset);
    }
    return made;
}

std::string description(uint32_t address, uint32_t size) {
    std::string made;
    put(made, address);
    put(made, size);
    return made + std::string(8, '\0');
}

struct Language {
    uint32_t id;
    std::string block;
};

// The first block of strings in several languages: the tree, the descriptions, the blocks.
std::string tree(const std::vector<Language>& languages, uint32_t address = 0x2000, uint32_t named = 0) {
    const uint32_t count = static_cast<uint32_t>(languages.size()), head = 16 + 8 * named,
                   third = 2 * (head + 8) + 8, descriptions = third + head + 8 * count;
    std::string made = directory({{6, below | (head + 8)}}, named);
    // One of that number that is no directory comes first.
    made += directory({{1, third}, {1, below | third}}, named);
    std::vector<Row> rows;
    std::string described, data;
    for (uint32_t i = 0; i < count; ++i) {
        rows.push_back({languages[i].id, descriptions + 16 * i});
        described += description(address + descriptions + 16 * count + static_cast<uint32_t>(data.size()),
                                 static_cast<uint32_t>(languages[i].block.size()));
        data += languages[i].block;
    }
    return made + directory(rows, named) + described + data;
}

Image imageOf(const std::string& contents) {
    Image image;
    image.contents = contents;
    image.sections = {{0x2000, static_cast<uint32_t>(contents.size()), 0}};
    image.sections[0].offset = image.headersEnd();
    return image;
}

std::string one(const std::wstring& text) {
    return blockBytes({text});
}

}  // namespace

TEST_CASE("languages are asked in their order, then the first of the file") {
    const std::string file =
        imageOf(tree({{5, one(L"")}, {0x0416, one(L"a")}, {0x0407, one(L"b")}, {0x0409, one(L"c")}})).bytes();
    CHECK(*stringOf(file, 0, {0x0409, 0x0407}) == L"c");
    CHECK(*stringOf(file, 0, {0x0407, 0x0409}) == L"b");
    CHECK(*stringOf(file, 0, {0x0411, 0x0407}) == L"b");
    CHECK(*stringOf(file, 0, {5, 0x0409}) == L"c");
    CHECK(*stringOf(file, 0, {0x0411}) == L"a");
    CHECK(*stringOf(file, 0, {}) == L"a");
}

TEST_CASE("named entries are passed over") {
    CHECK(*stringOf(imageOf(tree({{0x0409, one(L"a")}}, 0x2000, 3)).bytes(), 0) == L"a");
}

TEST_CASE("sixty-four languages are looked into, no more") {
    for (const auto& [empty, isFound] : {std::pair(63, true), {64, false}}) {
        std::vector<Language> languages(empty, {0x0416, one(L"")});
        languages.push_back({0x0407, one(L"last")});
        CHECK(stringOf(imageOf(tree(languages)).bytes(), 0).has_value() == isFound);
    }
}

TEST_CASE("a program file is told by its marks, and its resources by the third directory") {
    for (bool is64Bit : {false, true}) {
        Image image = imageOf(tree({{0x0409, one(L"a")}}));
        auto isFound = [](Image changed) {
            changed.sections[0].offset = changed.headersEnd();
            return stringOf(changed.bytes(), 0).has_value();
        };
        image.is64Bit = is64Bit;
        CHECK(isFound(image));
        Image other = image;
        other.dosMark = "ZM";
        CHECK_FALSE(isFound(other));
        other = image;
        other.mark = std::string("PE\0\1", 4);
        CHECK_FALSE(isFound(other));
        other = image;
        other.directories = 2;
        CHECK_FALSE(isFound(other));
        other = image;
        other.optionalSize = image.optional() - 1;
        CHECK_FALSE(isFound(other));
    }
}

TEST_CASE("what is asked for stands in one section, up to its last byte") {
    const std::string contents = tree({{0x0409, one(L"a")}});
    Image image = imageOf(contents);
    const uint32_t size = static_cast<uint32_t>(contents.size());
    // The tree in one, from 0x2000 on; the block, its last six bytes, in another, behind other bytes.
    image.sections = {{0x9000, 100, 0}, {0x2000, size - 4, 0}, {0x2000 + size - 4, 4, 0}};
    const auto found = [&](const std::vector<Part>& sections, const std::string& bytes) {
        image.sections = sections;
        for (Part& part : image.sections) part.offset += image.headersEnd();
        image.contents = bytes;
        return stringOf(image.bytes(), 0);
    };
    CHECK(*found({{0x9000, 100, 0}, {0x2000, size - 4, 0}, {0x2000 + size - 4, 4, size + 3}},
                 contents + "xyz" + one(L"b")) == L"b");
    CHECK_FALSE(found({{0x9000, 100, 0}, {0x2000, size - 4, 0}, {0x2000 + size - 4, 3, size + 3}},
                      contents + "xyz" + one(L"b")));
    CHECK_FALSE(found({{0x2001, size, 0}}, contents));
    CHECK_FALSE(found({{0x2000, size - 1, 0}}, contents));
    CHECK(*found({{0x2000, size, 0}}, contents) == L"a");
    // In a section that begins before it.
    CHECK(*found({{0x1FF0, size + 16, 0}}, std::string(16, 'x') + contents) == L"a");
}

TEST_CASE("a block is described at any place, by what is no directory, and read as far as one can be long") {
    const uint32_t third = 56, described = third + 24;
    const auto withLanguage = [&](uint32_t offset, const std::string& rest) {
        return directory({{6, below | 24}}) + directory({{1, below | third}}) + std::string(8, '\0') +
               directory({{0x0409, offset}}) + rest;
    };
    const std::string odd =
        withLanguage(described + 1, "x" + description(0x2000 + described + 17, 4) + one(L"a"));
    CHECK(*stringOf(imageOf(odd).bytes(), 0) == L"a");

    // The same bytes stand where an address of more than two gigabytes would lead.
    const std::string directoryThere =
        withLanguage(below | described, description(0x2000 + described + 16, 4) + one(L"a"));
    Image image = imageOf(directoryThere);
    image.sections.push_back({0x2000 | below, static_cast<uint32_t>(directoryThere.size()), 0});
    for (Part& part : image.sections) part.offset = image.headersEnd();
    CHECK_FALSE(stringOf(image.bytes(), 0));

    const size_t longest = 16 * 2 * 0x10000;
    for (const auto& [size, isFound] : {std::pair(longest, true), {longest - 1, false}}) {
        std::string block = one(L"a");
        block.resize(size);
        const std::string whole =
            withLanguage(described, description(0x2000 + described + 16, 0xFFFFFFFF) + block);
        CHECK(stringOf(imageOf(whole).bytes(), 0).has_value() == isFound);
    }
}
