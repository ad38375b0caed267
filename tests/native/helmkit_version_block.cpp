#include <doctest/doctest.h>

#include <random>

#include "win32/base/utf16_bytes.h"
#include "win32/files/version_block.h"

using namespace std::string_literals;

namespace {

using Keys = std::vector<std::wstring>;

std::string aligned(std::string bytes) {
    bytes.resize((bytes.size() + 3) & ~size_t{3});
    return bytes;
}

std::string node(const std::wstring& key, const std::string& value, const std::string& children) {
    std::string bytes = aligned(std::string(6, '\0') + win32::bytesOf(key + L'\0'));
    bytes = aligned(bytes + value) + children;
    bytes[0] = static_cast<char>(bytes.size());
    bytes[1] = static_cast<char>(bytes.size() >> 8);
    bytes[2] = static_cast<char>(value.size());
    return bytes;
}

std::string block(const std::string& children) {
    return node(L"VS_VERSION_INFO", std::string(52, '\x55'), children);
}

const std::string two =
    aligned(node(L"040904b0", "", aligned(node(L"Name", "ab\0\0", "")))) + node(L"FFFF0000", "", "");
const std::string translation =
    aligned(node(L"VarFileInfo", "", node(L"Translation", "\x09\x04\xb0\x04", "")));

}  // namespace

TEST_CASE("string tables are listed, wherever their part stands") {
    std::string part = node(L"StringFileInfo", "", two);
    CHECK((win32::stringTableKeys(block(part)) == Keys{L"040904b0", L"FFFF0000"}));
    CHECK((win32::stringTableKeys(block(translation + part)) == Keys{L"040904b0", L"FFFF0000"}));
    CHECK((win32::stringTableKeys(block(part) + std::string(400, '\xff')) == Keys{L"040904b0", L"FFFF0000"}));
    CHECK(win32::stringTableKeys(block(translation)).empty());
    CHECK(win32::stringTableKeys(block("")).empty());
    CHECK(win32::stringTableKeys("").empty());
}

TEST_CASE("a key has up to 64 characters, and the longest table ends where the block does") {
    for (const auto& [length, isTaken] : {std::pair(64, true), {65, false}}) {
        const std::wstring key(length, L'k');
        const std::string whole = block(node(L"STRINGFILEINFO", "", node(key, "", "")));
        CHECK((win32::stringTableKeys(whole) == (isTaken ? Keys{key} : Keys{})));
        CHECK(win32::stringTableKeys(whole.substr(0, whole.size() - 1)).empty());
    }
}

TEST_CASE("a part that ends three bytes before the end of the block is the last one") {
    for (size_t cut : {1, 2, 3}) {
        // Neither the table's end nor the block's is a multiple of four.
        std::string table = node(L"040904b0", "", ""), whole = block(node(L"StringFileInfo", "", table));
        for (size_t level : {size_t{0}, whole.size() - table.size() - 36, whole.size() - table.size()})
            whole[level] = static_cast<char>(whole[level] + 4 - cut);
        whole += std::string(4 - cut, '\0');
        CHECK((win32::stringTableKeys(whole) == Keys{L"040904b0"}));
        CHECK((win32::stringTableKeys(std::string_view(whole.c_str(), whole.size())) == Keys{L"040904b0"}));
    }
}

TEST_CASE("any cut and any changed byte of a block is survived") {
    std::string whole = block(translation + node(L"StringFileInfo", "", two));
    for (size_t size = 0; size <= whole.size(); ++size) {
        std::string cut = whole.substr(0, size);
        CHECK(win32::stringTableKeys(cut).size() <= 2);
    }
    for (size_t at = 0; at < whole.size(); ++at) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string changed = whole;
            changed[at] = static_cast<char>(byte);
            win32::stringTableKeys(changed);
        }
    }
    std::mt19937 random(7);
    for (int i = 0; i < 20000; ++i) {
        std::string noise(random() % 300, '\0');
        for (char& c : noise) c = static_cast<char>(random() % 4 ? random() % 8 : random());
        win32::stringTableKeys(noise);
    }
}

TEST_CASE("translations are pairs of 16-bit numbers") {
    auto pairs = win32::translationsOf("\x09\x04\xb0\x04\x07\x04\xe4\x04\x01\x02\x03"s);
    REQUIRE(pairs.size() == 2);
    CHECK(pairs[0].language == 0x0409);
    CHECK(pairs[0].codePage == 1200);
    CHECK(pairs[1].language == 0x0407);
    CHECK(pairs[1].codePage == 1252);
    CHECK(win32::translationsOf("\x09\x04\xb0\x04"s).size() == 1);
    CHECK(win32::translationsOf("").empty());
}

TEST_CASE("tables are asked in order, none twice") {
    Keys order =
        win32::tableOrder({{0x0409, 1200}, {0x0c07, 1252}, {0x0407, 1200}}, 0x0407, {L"040904B0", L"x"});
    CHECK(
        (order == Keys{L"040704b0", L"0c0704e4", L"040904b0", L"040704e4", L"04070000", L"0c0704b0",
                       L"0c070000", L"040904e4", L"04090000", L"000004b0", L"000004e4", L"00000000", L"x"}));
    CHECK((win32::tableOrder({}, 0x0407, {L"041904b0"}) ==
           Keys{L"040904b0", L"040904e4", L"04090000", L"000004b0", L"000004e4", L"00000000", L"041904b0"}));
}

TEST_CASE("a block that names thousands of tables gets a hundred of each kind asked, the user's among them") {
    std::vector<win32::Translation> named;
    Keys walked;
    for (uint16_t i = 0; i < 16000; ++i) {
        named.push_back({static_cast<uint16_t>(0x4000 + i), 1200});
        walked.push_back(L"table" + std::to_wstring(i));
    }
    named.back().language = 0x0407;
    const Keys order = win32::tableOrder(named, 0x0407, walked);
    CHECK(order.size() == 100 + 2 * 100 + 6 + 100);
    CHECK(order.front() == L"040704b0");
    CHECK(order[1] == L"400704b0");
    CHECK(order.back() == L"table99");
}

TEST_CASE("a block full of tables is walked in linear time") {
    std::string tables;
    while (tables.size() < 60000) tables += node(L"", "", "");
    CHECK(win32::stringTableKeys(block(node(L"StringFileInfo", "", tables))).size() == tables.size() / 8);
}
