#include "win32/files/version_block.h"

#include <algorithm>
#include <unordered_set>

#include "win32/base/ascii.h"
#include "win32/base/hex.h"
#include "win32/base/utf16_bytes.h"

namespace win32 {

namespace {

const size_t headerSize = 6;
const size_t smallestNode = headerSize + 2;
const size_t longestKey = 64;

// Each table costs Windows a walk through the block. The largest files in many languages name some forty.
const size_t mostTranslations = 100;
const size_t mostWalked = 100;

size_t aligned(size_t offset) {
    return (offset + 3) & ~size_t{3};
}

// A node: three 16-bit numbers (its length, its value's length, its type), a key that ends with a NUL, and,
// each at a multiple of four bytes, its value and its children. All offsets are within `block`.
struct Node {
    std::wstring key;
    size_t children = 0;
    size_t end = 0;
};

// False when no whole node stands between `begin` and `limit`.
bool readNode(std::string_view block, size_t begin, size_t limit, Node& node) {
    if (begin + smallestNode > limit) return false;
    const size_t length = unitAt(block, begin);
    if (length < smallestNode || length > limit - begin) return false;
    node.end = begin + length;
    node.key.clear();
    size_t at = begin + headerSize;
    for (;; at += 2) {
        if (node.end - at < 2 || node.key.size() > longestKey) return false;
        unsigned unit = unitAt(block, at);
        if (unit == 0) break;
        node.key += static_cast<wchar_t>(unit);
    }
    node.children = aligned(at + 2) + unitAt(block, begin + 2);
    return true;
}

std::wstring tableKey(unsigned language, unsigned codePage) {
    std::wstring key;
    appendHex(key, language << 16 | codePage, 8);
    return key;
}

class Order {
  public:
    void add(const std::wstring& key) {
        std::wstring inLowerCase = key;
        std::transform(key.begin(), key.end(), inLowerCase.begin(), loweredAscii);
        if (known_.insert(inLowerCase).second) keys.push_back(key);
    }
    void add(unsigned language, unsigned codePage) { add(tableKey(language, codePage)); }
    // Unicode, Western Windows, neutral: what resource compilers write.
    void addCodePages(unsigned language) {
        for (unsigned codePage : {1200u, 1252u, 0u}) add(language, codePage);
    }
    std::vector<std::wstring> keys;

  private:
    std::unordered_set<std::wstring> known_;  // in lower case
};

}  // namespace

std::vector<std::wstring> stringTableKeys(std::string_view block) {
    std::vector<std::wstring> keys;
    Node root, part, table;
    // The buffer may be larger than the block; its first node is the block.
    if (!readNode(block, 0, block.size(), root)) return keys;
    for (size_t at = aligned(root.children); readNode(block, at, root.end, part); at = aligned(part.end)) {
        if (!sameIgnoringAsciiCase(part.key, L"StringFileInfo")) continue;
        for (size_t inner = aligned(part.children); readNode(block, inner, part.end, table);
             inner = aligned(table.end)) {
            keys.push_back(table.key);
        }
    }
    return keys;
}

std::vector<Translation> translationsOf(std::string_view bytes) {
    std::vector<Translation> translations;
    for (size_t at = 0; bytes.size() - at >= 4; at += 4) {
        translations.push_back(
            {static_cast<uint16_t>(unitAt(bytes, at)), static_cast<uint16_t>(unitAt(bytes, at + 2))});
    }
    return translations;
}

std::vector<std::wstring> tableOrder(std::vector<Translation> translations, uint16_t userLanguage,
                                     const std::vector<std::wstring>& walked) {
    const unsigned primary = 0x3FF;
    auto isUsers = [&](const Translation& t) { return t.language == userLanguage; };
    auto isKindred = [&](const Translation& t) { return (t.language & primary) == (userLanguage & primary); };
    auto rest = std::stable_partition(translations.begin(), translations.end(), isUsers);
    std::stable_partition(rest, translations.end(), isKindred);
    if (translations.size() > mostTranslations) translations.resize(mostTranslations);

    Order order;
    for (const Translation& t : translations) order.add(t.language, t.codePage);
    for (const Translation& t : translations) order.addCodePages(t.language);
    order.addCodePages(0x0409);
    order.addCodePages(0);
    for (size_t i = 0; i < walked.size() && i < mostWalked; ++i) order.add(walked[i]);
    return order.keys;
}

}  // namespace win32
