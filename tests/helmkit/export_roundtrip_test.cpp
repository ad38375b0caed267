// Exporting, wiping and importing with the tests' own reader gives back the same names, types and bytes.
#include <doctest/doctest.h>

#include <map>

#include "helmkit/registry_export.h"
#include "tests/support/random_registry.h"
#include "tests/support/reg_reader.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/scripted_desktop.h"
#include "tests/support/text.h"
#include "win32/registry/registry_tree.h"

namespace {

const std::wstring base = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx";
const std::wstring root = L"HKEY_LOCAL_MACHINE\\";

// Everything below the key, as the native calls' view of the registry has it: path and name to type and
// bytes.
using Contents = std::map<std::pair<std::wstring, std::wstring>, std::pair<DWORD, std::string>>;

void collect(const std::wstring& path, Contents& contents) {
    win32::RegistryKey key;
    REQUIRE(key.open(HKEY_LOCAL_MACHINE, path, KEY_READ) == ERROR_SUCCESS);
    contents[{path, L"(key)"}] = {};
    std::wstring name;
    win32::RegistryValue value;
    for (DWORD i = 0; key.valueAt(i, name, value) == ERROR_SUCCESS; ++i)
        contents[{path, name}] = {value.type, value.data};
    for (DWORD i = 0; key.subkeyAt(i, name) == ERROR_SUCCESS; ++i) collect(path + L"\\" + name, contents);
}

Contents contentsOf(const std::wstring& path) {
    Contents contents;
    collect(path, contents);
    return contents;
}

void import(const reg::File& file) {
    for (const reg::Key& key : file.keys) {
        const std::wstring path = key.path.substr(root.size());
        RegistryFixture::makeKey(HKEY_LOCAL_MACHINE, path);
        for (const reg::Value& value : key.values) {
            RegistryFixture::setBytes(HKEY_LOCAL_MACHINE, path, value.name, value.type, value.data);
        }
    }
}

struct Roundtrip {
    RegistryFixture registry;
    ScriptedDesktop desktop;

    // What came back, after everything below the base key was exported, wiped and imported.
    Contents exportedWipedImported() {
        const reg::File file = reg::read(helmkit::exportKey(HKEY_LOCAL_MACHINE, base).text());
        REQUIRE(win32::deleteKeyTree(HKEY_LOCAL_MACHINE, base) == ERROR_SUCCESS);
        import(file);
        return contentsOf(base);
    }
};

}  // namespace

TEST_CASE_FIXTURE(Roundtrip, "200 random trees of a real registry come back whole") {
    for (uint32_t seed = 1; seed <= 200; ++seed) {
        CAPTURE(seed);
        RandomRegistry random(seed);
        win32::deleteKeyTree(HKEY_LOCAL_MACHINE, base);
        registry.makeKey(HKEY_LOCAL_MACHINE, base);
        for (size_t i = 2 + random.below(6); i > 0; --i) {
            std::wstring path = base;
            for (size_t depth = random.below(4); depth > 0; --depth)
                path += L"\\k" + std::to_wstring(random.below(3));
            reg::Value value = random.value(L"v" + std::to_wstring(random.below(9)));
            registry.setBytes(HKEY_LOCAL_MACHINE, path, value.name, value.type, value.data);
        }
        const Contents before = contentsOf(base);
        REQUIRE(exportedWipedImported() == before);
    }
}

TEST_CASE_FIXTURE(Roundtrip, "hard names and data come back whole") {
    using namespace std::string_literals;
    auto text = [](const std::wstring& units) { return win32::bytesOf(units); };
    const std::pair<DWORD, std::string> data[] = {
        {REG_SZ, ""},
        {REG_SZ, text(L"plain\0"s)},
        {REG_SZ, text(L"no end")},
        {REG_SZ, "odd"},
        {REG_SZ, text(L"in\0side\0"s)},
        {REG_SZ, text(L"two ends\0\0"s)},
        {REG_SZ, text(L"line\r\nbreak\0"s)},
        {REG_SZ, text(L"\"quoted\" and C:\\path\\\0"s)},
        {REG_SZ, text(L"\x20AC\x416\xD800\0"s)},
        {REG_EXPAND_SZ, text(L"%windir%\\x\0"s)},
        {REG_EXPAND_SZ, text(L"no end")},
        {REG_EXPAND_SZ, "x"},
        {REG_MULTI_SZ, text(L"a\0b\0\0"s)},
        {REG_MULTI_SZ, text(L"a")},
        {REG_MULTI_SZ, ""},
        {REG_MULTI_SZ, text(L"\0\0"s)},
        {REG_BINARY, ""},
        {REG_BINARY, std::string(100, '\x7F')},
        {REG_DWORD, "\1\2\3\4"s},
        {REG_DWORD, "\1\2\3"s},
        {REG_DWORD, ""},
        {REG_DWORD, "\1\2\3\4\5"s},
        {REG_QWORD, "12345678"s},
        {REG_NONE, "x"},
        {REG_LINK, text(L"\\Registry\\Machine")},
        {REG_DWORD_BIG_ENDIAN, "\1\2\3\4"s},
        {0x4711, "unknown"},
        {0xFFFFFFFF, ""},
    };
    int number = 0;
    for (const auto& [type, bytes] : data) {
        registry.setBytes(HKEY_LOCAL_MACHINE, base, L"v" + std::to_wstring(number++), type, bytes);
    }
    for (const std::wstring& name :
         {std::wstring(), std::wstring(L"\""), std::wstring(L"\\"), std::wstring(L"a=b"), std::wstring(L"@"),
          std::wstring(L"[x]"), std::wstring(L"; x"), std::wstring(L" x "), std::wstring(L"\t"),
          std::wstring(255, L'n'), std::wstring(2000, L'm'), std::wstring(L"\x416\x20AC")}) {
        registry.setString(HKEY_LOCAL_MACHINE, base + L"\\deep\\er\\[key] \"name\"", name, L"x");
    }
    const Contents before = contentsOf(base);
    CHECK(before.size() == std::size(data) + 12 + 4);
    CHECK(exportedWipedImported() == before);
}

TEST_CASE_FIXTURE(Roundtrip, "names that cannot be written are left out and named, the rest comes back") {
    registry.setString(HKEY_LOCAL_MACHINE, base, L"good", L"x");
    registry.setString(HKEY_LOCAL_MACHINE, base, L"line\r\nbreak", L"x");
    registry.setCounted(HKEY_LOCAL_MACHINE, base, std::wstring_view(L"a\0b", 3), REG_SZ,
                        win32::bytesOf(L"y"));
    registry.setString(HKEY_LOCAL_MACHINE, base + L"\\key\nbreak", L"v", L"x");
    const reg::File file = reg::read(helmkit::exportKey(HKEY_LOCAL_MACHINE, base).text());
    CHECK(file.omissions.size() == 3);
    REQUIRE(file.keys.size() == 1);
    REQUIRE(file.keys[0].values.size() == 1);
    CHECK(file.keys[0].values[0].name == L"good");
}

TEST_CASE_FIXTURE(Roundtrip, "10,000 values and one of 1 MiB come back whole") {
    for (int i = 0; i < 10000; ++i) {
        registry.setString(HKEY_LOCAL_MACHINE, base, L"value " + std::to_wstring(i),
                           L"C:\\x\\" + std::to_wstring(i));
    }
    std::string large(1 << 20, '\0');
    for (size_t i = 0; i < large.size(); ++i) large[i] = static_cast<char>(i * 7 + (i >> 9));
    registry.setBytes(HKEY_LOCAL_MACHINE, base, L"large", REG_BINARY, large);
    const Contents before = contentsOf(base);
    CHECK(before.size() == 10002);
    CHECK(exportedWipedImported() == before);
}
