// Links in the registry: what a place is written to and deleted from is the place itself.
#include "helmkit/registry_export.h"
#include "tests/helmkit/registry_access_fixture.h"
#include "tests/support/scripted_desktop.h"
#include "win32/base/utf16_bytes.h"

using namespace registry_test;

namespace {

const HKEY machine = HKEY_LOCAL_MACHINE;

struct LinkedPlace : Registry {
    LinkedPlace() {
        setString(HKEY_CURRENT_USER, L"precious", L"v", L"kept");
        setString(HKEY_CURRENT_USER, L"precious\\below\\deep", L"v", L"kept");
        makeKey(machine, L"top");
        makeLink(machine, L"top\\link", HKEY_CURRENT_USER, L"precious");
    }
};

}  // namespace

TEST_CASE_FIXTURE(LinkedPlace, "a place that is a link is neither written to nor deleted from") {
    if (!isWide()) return;  // Windows 9x has no links
    CHECK(write(L"v", L"changed", L"top\\link") != 0);
    CHECK(write(L"new", L"x", L"top\\link\\") != 0);
    CHECK(deleteValue(L"v", L"top\\link") != 0);
    CHECK(deleteKey(L"top\\link\\below") != 0);
    CHECK(values(L"top\\link") == Names{L"v"});
    CHECK(read(L"v", L"top\\link") == L"kept");
    CHECK(subkeys(L"top\\link") == Names{L"below"});
    CHECK(valueCount(HKEY_CURRENT_USER, L"precious") == 1);
    CHECK(hasKey(HKEY_CURRENT_USER, L"precious\\below\\deep"));
}

TEST_CASE_FIXTURE(LinkedPlace, "a link further up is followed") {
    if (!isWide()) return;
    CHECK(write(L"v", L"changed", L"top\\link\\below") == 0);
    CHECK(read(L"v", L"top\\link\\below") == L"changed");
    CHECK(write(L"made", L"x", L"top\\link\\fresh") == 0);
    CHECK(hasValue(HKEY_CURRENT_USER, L"precious\\fresh", L"made"));
    CHECK(deleteValue(L"v", L"top\\link\\below") == 0);
    CHECK(deleteKey(L"top\\link\\below\\deep") == 0);
    CHECK_FALSE(hasKey(HKEY_CURRENT_USER, L"precious\\below\\deep"));
}

TEST_CASE_FIXTURE(LinkedPlace, "a link that leads nowhere is no place either") {
    if (!isWide()) return;
    REQUIRE(::RegDeleteKeyW(HKEY_CURRENT_USER, L"precious\\below\\deep") == 0);
    REQUIRE(::RegDeleteKeyW(HKEY_CURRENT_USER, L"precious\\below") == 0);
    REQUIRE(::RegDeleteKeyW(HKEY_CURRENT_USER, L"precious") == 0);
    CHECK(write(L"v", L"x", L"top\\link") != 0);
    CHECK(deleteValue(L"v", L"top\\link") != 0);
    CHECK_FALSE(hasKey(HKEY_CURRENT_USER, L"precious"));
    CHECK(deleteKey(L"top\\link") == 0);
    CHECK(subkeys(L"top").empty());
}

TEST_CASE_FIXTURE(Registry, "an ordinary key does not become a link by a value of that name") {
    ScriptedDesktop desktop;
    setBytes(machine, L"top\\key", L"SymbolicLinkValue", REG_LINK, win32::bytesOf(L"\\Registry\\Machine"));
    setString(machine, L"top\\key\\below", L"v", L"1");
    CHECK(helmkit::exportKey(machine, L"top").text() ==
          L"\r\n[HKEY_LOCAL_MACHINE\\top]\r\n"
          L"\r\n[HKEY_LOCAL_MACHINE\\top\\key]\r\n"
          L"\"SymbolicLinkValue\"=hex(6):5c,00,52,00,65,00,67,00,69,00,73,00,74,00,72,00,79,\\\r\n"
          L"  00,5c,00,4d,00,61,00,63,00,68,00,69,00,6e,00,65,00\r\n"
          L"\r\n[HKEY_LOCAL_MACHINE\\top\\key\\below]\r\n"
          L"\"v\"=\"1\"\r\n");
    CHECK(write(L"w", L"2", L"top\\key") == 0);
    CHECK(deleteKey(L"top\\key\\below") == 0);
    CHECK(deleteKey(L"top") == 0);
    CHECK_FALSE(hasKey(machine, L"top"));
}
