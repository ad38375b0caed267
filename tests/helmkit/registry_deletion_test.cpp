// What deleting takes, and what it must never take: names, links and hives that lead elsewhere.
#include <algorithm>

#include "tests/helmkit/registry_access_fixture.h"
#include "win32/base/utf16_bytes.h"
#include "win32/system/system.h"

using namespace registry_test;

TEST_CASE_FIXTURE(Registry, "deleting a value leaves the others") {
    setString(HKEY_LOCAL_MACHINE, run, L"a", L"1");
    setString(HKEY_LOCAL_MACHINE, run, L"", L"default");
    setString(HKEY_LOCAL_MACHINE, run + L"\\sub", L"s", L"1");
    CHECK(deleteValue(L"") == 0);
    CHECK(values() == Names{L"a"});
    CHECK(deleteValue(L"a") == 0);
    CHECK(deleteValue(L"a") == ERROR_FILE_NOT_FOUND);
    CHECK(deleteValue(L"a", L"no\\key") == ERROR_FILE_NOT_FOUND);
    CHECK(hasKey(HKEY_LOCAL_MACHINE, run + L"\\sub"));
}

TEST_CASE_FIXTURE(Registry, "a name with an inner NUL is refused and no other value is touched") {
    setString(HKEY_LOCAL_MACHINE, run, L"a", L"innocent");
    setString(HKEY_LOCAL_MACHINE, run, L"", L"default");
    const std::wstring hidden(L"a\0b", 3), empty(L"\0x", 2);
    setCounted(HKEY_LOCAL_MACHINE, run, hidden, REG_SZ, win32::bytesOf({L"hidden\0", 7}));
    setCounted(HKEY_LOCAL_MACHINE, run, empty, REG_SZ, win32::bytesOf({L"hidden\0", 7}));
    for (const std::wstring& name : {hidden, empty}) {
        CHECK(read(name) == L"");
        CHECK(status != 0);
        CHECK(type(name) == -1);
        CHECK(deleteValue(name) != 0);
        CHECK(write(name, L"x") != 0);
    }
    CHECK(valueCount(HKEY_LOCAL_MACHINE, run) == 4);
    CHECK(read(L"a") == L"innocent");
    CHECK(read(L"") == L"default");
    auto listed = values();
    CHECK(listed.size() == 4);
    if (isWide()) CHECK(std::count(listed.begin(), listed.end(), hidden) == 1);
}

TEST_CASE_FIXTURE(Registry, "a name that the code page lacks is refused in the ANSI flavour") {
    setString(HKEY_LOCAL_MACHINE, run, L"a\u0416", L"zhe");
    setString(HKEY_LOCAL_MACHINE, run, L"a?", L"mark");
    if (isWide()) {
        CHECK(read(L"a\u0416") == L"zhe");
        CHECK(read(L"a?") == L"mark");
        CHECK(deleteValue(L"a?") == 0);
        CHECK(values() == Names{L"a\u0416"});
    } else {
        for (const wchar_t* name : {L"a\u0416", L"a?"}) {
            CHECK(read(name) == L"");
            CHECK(status != 0);
            CHECK(deleteValue(name) != 0);
        }
        CHECK(valueCount(HKEY_LOCAL_MACHINE, run) == 2);
    }
}

TEST_CASE_FIXTURE(Registry, "a lone question mark stands for itself") {
    setString(HKEY_LOCAL_MACHINE, run, L"who?", L"me");
    CHECK(read(L"who?") == L"me");
    CHECK(deleteValue(L"who?") == 0);
}

TEST_CASE_FIXTURE(Registry, "deleting a key takes what is below it") {
    setString(HKEY_LOCAL_MACHINE, L"top\\a\\b\\c", L"v", L"1");
    makeKey(HKEY_LOCAL_MACHINE, L"top\\a\\d");
    makeKey(HKEY_LOCAL_MACHINE, L"top\\e");
    CHECK(deleteKey(L"top\\a\\") == 0);
    CHECK_FALSE(hasKey(HKEY_LOCAL_MACHINE, L"top\\a"));
    CHECK(hasKey(HKEY_LOCAL_MACHINE, L"top\\e"));
    CHECK(deleteKey(L"top\\a") == ERROR_FILE_NOT_FOUND);
    CHECK(deleteKey(L"") != 0);
    CHECK(deleteKey(L"\\") != 0);
    CHECK(hasKey(HKEY_LOCAL_MACHINE, L"top"));
    CHECK(deleteKey(std::wstring(L"top\0x", 5)) != 0);
    CHECK(hasKey(HKEY_LOCAL_MACHINE, L"top"));
}

TEST_CASE_FIXTURE(Registry, "a link is deleted, what it leads to stays") {
    if (!isWide()) return;  // Windows 9x has no links
    setString(HKEY_CURRENT_USER, L"precious\\below", L"v", L"1");
    makeKey(HKEY_LOCAL_MACHINE, L"top");
    makeLink(HKEY_LOCAL_MACHINE, L"top\\link", HKEY_CURRENT_USER, L"precious");
    REQUIRE(hasKey(HKEY_LOCAL_MACHINE, L"top\\link\\below"));
    CHECK(deleteKey(L"top") == 0);
    CHECK_FALSE(hasKey(HKEY_LOCAL_MACHINE, L"top"));
    CHECK(hasKey(HKEY_CURRENT_USER, L"precious\\below"));
}

TEST_CASE_FIXTURE(Registry,
                  "a subkey whose name holds a NUL stops the deletion and no other key goes for it") {
    makeKey(HKEY_LOCAL_MACHINE, L"other\\a");
    makeKey(HKEY_LOCAL_MACHINE, L"top");
    makeCountedKey(HKEY_LOCAL_MACHINE, L"top", std::wstring(L"a\0b", 3));
    CHECK(deleteKey(L"top") != 0);
    CHECK(hasKey(HKEY_LOCAL_MACHINE, L"top"));
    CHECK(hasKey(HKEY_LOCAL_MACHINE, L"other\\a"));
}

TEST_CASE_FIXTURE(Registry, "the key that is kept open for reading forgets what was changed") {
    setString(HKEY_LOCAL_MACHINE, run, L"a", L"1");
    CHECK(read(L"a") == L"1");
    CHECK(deleteKey(run) == 0);
    CHECK(read(L"a") == L"");
    setString(HKEY_LOCAL_MACHINE, run, L"a", L"2");
    CHECK(read(L"a") == L"2");
    // Deleted and made again behind its back.
    auto other = make<helmkit::server::RegistryAccess>();
    REQUIRE(other->DeleteKey(hklm, bs(run).get(), &status) == S_OK);
    CHECK(read(L"a") == L"");
    setString(HKEY_LOCAL_MACHINE, run, L"a", L"3");
    CHECK(read(L"a") == L"3");
}

TEST_CASE_FIXTURE(Registry, "hives are told apart and any other number is refused") {
    setString(HKEY_CURRENT_USER, L"k", L"v", L"user");
    // Wine overrides that hive in the program's own view only.
    if (!win32::isRedirected()) setString(HKEY_CLASSES_ROOT, L"k", L"v", L"classes");
    auto readFrom = [&](LONG hive) {
        return stringFrom([&](BSTR* data) {
            return access->ReadValue(hive, bs(L"k").get(), bs(L"v").get(), data, &status);
        });
    };
    CHECK(readFrom(hkcu) == L"user");
    CHECK(readFrom(static_cast<LONG>(0x80000000)) == (win32::isRedirected() ? L"" : L"classes"));
    CHECK(readFrom(hklm) == L"");
    for (LONG hive : {0L, 1L, static_cast<LONG>(0x80000003), static_cast<LONG>(0x80000004)}) {
        win32::BString data;
        CHECK(access->ReadValue(hive, bs(L"k").get(), bs(L"v").get(), data.out(), &status) == E_INVALIDARG);
        CHECK(access->DeleteKey(hive, bs(L"k").get(), &status) == E_INVALIDARG);
    }
    win32::ComPtr<IErrorInfo> info;
    CHECK(::GetErrorInfo(0, info.out()) == S_OK);
}
