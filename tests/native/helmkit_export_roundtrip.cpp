// Random registry trees, written in the export notation and read back by a reader of the tests' own.
#include <doctest/doctest.h>

#include <set>

#include "helmkit/export_text.h"
#include "tests/support/random_registry.h"
#include "tests/support/reg_reader.h"

namespace {

struct Tree {
    std::vector<reg::Key> writable;  // what has to come back
    size_t omitted = 0;              // names that cannot be written
    std::wstring text;
};

void addValues(RandomRegistry& random, Tree& tree, const std::wstring& path) {
    std::set<std::wstring> names;
    for (size_t i = random.below(6); i > 0; --i) {
        std::wstring name = random.below(8) ? random.text(random.below(10) ? 12 : 300) : std::wstring();
        if (!names.insert(name).second) continue;
        reg::Value value = random.value(name);
        helmkit::appendValue(tree.text, path, {value.name, value.type, value.data, value.data});
        if (helmkit::canBeWritten(name)) {
            tree.writable.back().values.push_back(value);
        } else {
            ++tree.omitted;
        }
    }
}

void addKey(RandomRegistry& random, Tree& tree, const std::wstring& path, int depth) {
    helmkit::appendKeyHeader(tree.text, path);
    tree.writable.push_back({path, {}});
    addValues(random, tree, path);
    for (size_t i = depth < 3 ? random.below(3) : 0; i > 0; --i) {
        std::wstring name = random.text(10);
        for (wchar_t& unit : name) {
            if (unit == L'\\' || unit == L'\0' || unit == L'\r' || unit == L'\n') unit = L'/';
        }
        addKey(random, tree, path + L'\\' + name, depth + 1);
    }
}

}  // namespace

TEST_CASE("20,000 random trees come back with the same names, types and bytes") {
    size_t values = 0, omissions = 0, bytes = 0;
    for (uint32_t seed = 1; seed <= 20000; ++seed) {
        RandomRegistry random(seed);
        Tree tree;
        addKey(random, tree, L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Run", 0);
        reg::File read = reg::read(tree.text);
        if (read.keys != tree.writable || read.omissions.size() != tree.omitted) FAIL("seed " << seed);
        for (const reg::Key& key : read.keys) values += key.values.size();
        omissions += tree.omitted;
        bytes += tree.text.size();
    }
    // The figures say that the trees were not empty and that both roads were taken.
    CHECK(values > 100000);
    CHECK(omissions > 1000);
    MESSAGE(values << " values, " << omissions << " omissions, " << bytes << " characters");
}

TEST_CASE("the tests' reader refuses what is not well-formed") {
    const std::wstring key = L"\r\n[HKEY_LOCAL_MACHINE\\x]\r\n";
    CHECK(reg::read(key + L"\"a\"=\"b\"\r\n").keys[0].values.size() == 1);
    for (const wchar_t* bad :
         {L"\"a\"=\"b\"", L"\"a\"=\"b\r\n", L"\"a\"=\"b\\c\"\r\n", L"\"a\"=dword:1\r\n", L"\"a\"=hex:1g\r\n",
          L"\"a\"=hex:11\\\r\n  22\r\n", L"\"a\"=hex:11,\\\r\n22\r\n", L"\"\"=\"b\"\r\n", L"a=b\r\n",
          L"[x\r\n", L"\"a\"=\"b\" \r\n", L"\"a\"=hex:11,\\\r\n"}) {
        CHECK_THROWS(reg::read(key + bad));
    }
    CHECK_THROWS(reg::read(L"\"a\"=\"b\"\r\n"));
}
