// Reading, listing and writing.
#include "tests/helmkit/registry_access_fixture.h"
#include "tests/support/processor_time.h"
#include "win32/base/utf16_bytes.h"

using namespace registry_test;

TEST_CASE_FIXTURE(Registry, "a string is read as stored, not expanded") {
    setString(HKEY_LOCAL_MACHINE, run, L"a", L"C:\\a.exe /b");
    setString(HKEY_LOCAL_MACHINE, run, L"b", L"%SystemRoot%\\b.exe", REG_EXPAND_SZ);
    setString(HKEY_LOCAL_MACHINE, run, L"", L"the default");
    CHECK(read(L"a") == L"C:\\a.exe /b");
    CHECK(status == 0);
    CHECK(read(L"b") == L"%SystemRoot%\\b.exe");
    CHECK(status == 0);
    CHECK(read(L"") == L"the default");
    CHECK(read(L"A", run + L"\\") == L"C:\\a.exe /b");
}

TEST_CASE_FIXTURE(Registry, "what is missing reads as empty with status 2") {
    CHECK(read(L"a") == L"");
    CHECK(status == ERROR_FILE_NOT_FOUND);
    makeKey(HKEY_LOCAL_MACHINE, run);
    CHECK(read(L"a") == L"");
    CHECK(status == ERROR_FILE_NOT_FOUND);
    CHECK(type(L"a") == -1);
    CHECK(values().empty());
    CHECK(values(L"no\\such\\key").empty());
    CHECK(subkeys(L"no\\such\\key").empty());
}

TEST_CASE_FIXTURE(Registry, "numbers are decimal, other types bytes, both with status 1630") {
    struct Row {
        DWORD type;
        std::string data;
        const wchar_t* text;
    };
    const Row rows[] = {
        {REG_DWORD, std::string("\xff\xff\xff\xff", 4), L"4294967295"},
        {REG_DWORD_BIG_ENDIAN, std::string("\0\0\1\2", 4), L"258"},
        {REG_QWORD, std::string("\0\0\0\0\1\0\0\0", 8), L"4294967296"},
        {REG_DWORD, std::string("\1\2\3", 3), L"01,02,03"},
        {REG_BINARY, std::string("\0\xab", 2), L"00,ab"},
        {REG_NONE, "", L""},
    };
    for (const Row& row : rows) {
        CAPTURE(row.type);
        setBytes(HKEY_LOCAL_MACHINE, run, L"a", row.type, row.data);
        CHECK(read(L"a") == row.text);
        CHECK(status == ERROR_UNSUPPORTED_TYPE);
        CHECK(type(L"a") == static_cast<LONG>(row.type));
    }
}

TEST_CASE_FIXTURE(Registry, "a multi-string is joined by line feeds") {
    setBytes(HKEY_LOCAL_MACHINE, run, L"a", REG_MULTI_SZ, win32::bytesOf({L"autocheck autochk *\0\0", 21}));
    CHECK(read(L"a") == L"autocheck autochk *");
    CHECK(status == ERROR_MORE_DATA);
    setBytes(HKEY_LOCAL_MACHINE, run, L"a", REG_MULTI_SZ, win32::bytesOf({L"one\0two\0\0", 9}));
    CHECK(read(L"a") == L"one\ntwo");
}

TEST_CASE_FIXTURE(Registry, "hostile text data stays within its bytes") {
    struct Row {
        std::string data;
        const wchar_t* text;
    };
    const Row rows[] = {
        {"", L""},
        {std::string("\0\0", 2), L""},
        {std::string("a\0b\0", 4), L"ab"},
        {std::string("a\0b\0\0\0c\0", 8), L"ab"},
        {win32::bytesOf(std::wstring(100000, L'x')), nullptr},
        {win32::bytesOf(std::wstring(1024, L'y')), nullptr},
    };
    for (const Row& row : rows) {
        for (DWORD stringType : {REG_SZ, REG_EXPAND_SZ}) {
            setBytes(HKEY_LOCAL_MACHINE, run, L"a", stringType, row.data);
            bool isAsStored = read(L"a") == (row.text ? row.text : win32::unitsOf(row.data));
            CHECK(isAsStored);
        }
    }
    if (isWide()) {
        setBytes(HKEY_LOCAL_MACHINE, run, L"a", REG_SZ, std::string("a\0b\0c", 5));
        CHECK(read(L"a") == L"ab");
        setBytes(HKEY_LOCAL_MACHINE, run, L"a", REG_SZ, std::string("a", 1));
        CHECK(read(L"a") == L"");
    }
}

TEST_CASE_FIXTURE(Registry, "megabytes are read whole") {
    std::wstring text(3 << 20, L'm');
    setString(HKEY_LOCAL_MACHINE, run, L"big", text);
    bool isWhole = read(L"big") == text;
    CHECK(isWhole);
}

TEST_CASE_FIXTURE(Registry, "names are listed in the registry's order with what they are") {
    for (const wchar_t* name : {L"a", L"b", L"c?", L"d\\e"}) setString(HKEY_LOCAL_MACHINE, run, name, L"x");
    CHECK(values() == Names{L"a", L"b", L"c?", L"d\\e"});
    makeKey(HKEY_LOCAL_MACHINE, run + L"\\One");
    makeKey(HKEY_LOCAL_MACHINE, run + L"\\two");
    CHECK(subkeys(run) == Names{L"One", L"two"});
    CHECK(subkeys(run + L"\\\\") == Names{L"One", L"two"});
}

TEST_CASE_FIXTURE(Registry, "a key that was made again since it was listed is listed and read anew") {
    setString(HKEY_LOCAL_MACHINE, run, L"old", L"1");
    CHECK(values() == Names{L"old"});
    CHECK(read(L"old") == L"1");
    REQUIRE(::RegDeleteKeyW(HKEY_LOCAL_MACHINE, run.c_str()) == ERROR_SUCCESS);
    setString(HKEY_LOCAL_MACHINE, run, L"new", L"2");
    CHECK(values() == Names{L"new"});
    CHECK(read(L"new") == L"2");
    CHECK(status == 0);
}

TEST_CASE_FIXTURE(Registry, "the longest value name is listed and read") {
    std::wstring name(16383, L'n');
    setString(HKEY_LOCAL_MACHINE, run, name, L"x");
    CHECK(values() == Names{name});
    CHECK(read(name) == L"x");
}

TEST_CASE_FIXTURE(Registry, "writing makes a string, or keeps the type of an expandable or multiple one") {
    CHECK(write(L"a", L"new") == 0);
    DWORD found = 0;
    CHECK(bytes(HKEY_LOCAL_MACHINE, run, L"a", &found) == win32::bytesOf({L"new\0", 4}));
    CHECK(found == REG_SZ);
    setString(HKEY_LOCAL_MACHINE, run, L"b", L"old", REG_EXPAND_SZ);
    CHECK(write(L"b", L"%new%") == 0);
    CHECK(bytes(HKEY_LOCAL_MACHINE, run, L"b", &found) == win32::bytesOf({L"%new%\0", 6}));
    CHECK(found == REG_EXPAND_SZ);
    setBytes(HKEY_LOCAL_MACHINE, run, L"c", REG_MULTI_SZ, win32::bytesOf({L"x\0y\0\0", 5}));
    CHECK(write(L"c", L"autocheck autochk *") == 0);
    CHECK(bytes(HKEY_LOCAL_MACHINE, run, L"c", &found) == win32::bytesOf({L"autocheck autochk *\0\0", 21}));
    CHECK(found == REG_MULTI_SZ);
    setNumber(HKEY_LOCAL_MACHINE, run, L"d", 5);
    CHECK(write(L"d", L"") == 0);
    CHECK(bytes(HKEY_LOCAL_MACHINE, run, L"d", &found) == std::string(2, '\0'));
    CHECK(found == REG_SZ);
}

TEST_CASE_FIXTURE(Registry, "ten thousand values are listed and read in a time that nobody notices") {
    win32::OwnedKey key;
    HKEY opened = nullptr;
    REQUIRE(!::RegCreateKeyExW(HKEY_LOCAL_MACHINE, run.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                               &opened, nullptr));
    key.reset(opened);
    for (int i = 0; i < 10000; ++i) {
        ::RegSetValueExW(opened, std::to_wstring(100000 + i).c_str(), 0, REG_SZ,
                         reinterpret_cast<const BYTE*>(L"x"), 4);
    }
    const DWORD start = processorTime();
    auto names = values();
    CHECK(names.size() == 10000);
    for (const auto& name : names) REQUIRE(read(name) == L"x");
    const DWORD took = processorTime() - start;
    MESSAGE("10000 values listed and read in ms: " << took);
    CHECK(took < 10000);
}
