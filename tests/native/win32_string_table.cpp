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
