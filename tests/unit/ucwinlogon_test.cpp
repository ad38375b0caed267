#include <doctest/doctest.h>

#include "helmkit/client/logger.h"
#include "helmkit/client/registry_access.h"
#include "startup/protected_libraries.h"
#include "startup/ucWinlogon.h"
#include "tests/support/page_fixture.h"
#include "win32/files/files.h"

namespace {

const std::wstring notify = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify";
const int iconI = 0, iconOk = 1;

struct Winlogon : PageFixture {
    PageOf<startup::ucWinlogon> page{parent.handle()};
    win32::ListView& list = page.ListViewObject();

    void init() {
        helmkit::Logger logger = log.logger();
        page.Init(logger);
    }
    void package(const std::wstring& name, const std::wstring& dll, DWORD type = REG_SZ) {
        registry.setString(HKEY_LOCAL_MACHINE, notify + L"\\" + name, L"DLLName", dll, type);
    }
};

}  // namespace

TEST_CASE_FIXTURE(PageFixture, "without the Notify key the list is empty") {
    PageOf<startup::ucWinlogon> page(parent.handle());
    helmkit::Logger logger = log.logger();
    page.Init(logger);
    CHECK(page.ListViewObject().count() == 0);
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Winlogon, "packages are named by description, product description or the DLLName text") {
    package(L"a",
            program(folder.file(L"a.dll"), {{L"FileDescription", L"Described"}, {L"CompanyName", L"Maker"}}));
    package(L"b", program(folder.file(L"b.dll"), {{L"ProductName", L"P"}, {L"ProductDescription", L"Of P"}}));
    package(L"c", program(folder.file(L"c.dll"), {{L"ProductName", L"P"}}));
    package(L"d", L"C:\\nowhere\\d.dll");
    init();
    REQUIRE(list.count() == 4);
    CHECK(list.text(0, 0) == L"Described");
    CHECK(list.text(0, 1) == L"Maker");
    CHECK(list.text(1, 0) == L"Of P");
    CHECK(list.text(2, 0) == L"");
    CHECK(list.text(3, 0) == L"C:\\nowhere\\d.dll");
    CHECK(list.text(3, 1) == L"Not specified");
    CHECK(page.itemOf(0).record().Name() == L"a");
    CHECK(page.itemOf(0).record().text(L"GridIcon") == L"i");
    for (int row = 0; row < 4; ++row) CHECK(list.image(row) == iconI);
}

TEST_CASE_FIXTURE(Winlogon, "an empty DLLName: not specified, no file, and deleting removes the subkey") {
    package(L"empty", L"");
    registry.makeKey(HKEY_LOCAL_MACHINE, notify + L"\\none");
    init();
    REQUIRE(list.count() == 2);
    CHECK(list.text(0, 0) == L"Not specified");
    CHECK(list.text(1, 0) == L"Not specified");
    CHECK(fileBox(page) == L"Startup program is improperly configured");
    desktop.messageBoxAnswers = {IDOK, IDOK};
    press(page, 103);
    CHECK_FALSE(registry.hasKey(HKEY_LOCAL_MACHINE, notify + L"\\empty"));
    CHECK(registry.hasKey(HKEY_LOCAL_MACHINE, notify + L"\\none"));
    CHECK(log.lines.at(0).text == L"Deleting Winlogon('empty', 'Not specified', '')");
}

TEST_CASE_FIXTURE(Winlogon, "a DLLName that is no string counts as empty") {
    registry.setNumber(HKEY_LOCAL_MACHINE, notify + L"\\number", L"DLLName", 5);
    registry.setBytes(HKEY_LOCAL_MACHINE, notify + L"\\strings", L"DLLName", REG_MULTI_SZ,
                      std::string("a\0\0\0\0\0", 6));
    init();
    REQUIRE(list.count() == 2);
    for (int row : {0, 1}) {
        CHECK(list.text(row, 0) == L"Not specified");
        CHECK(page.itemOf(row).file() == L"");
    }
}

TEST_CASE_FIXTURE(Winlogon, "a protected package is refused with the stronger message") {
    package(L"wlnotify",
            program(windows + L"\\system32\\wlnotify.dll",
                    {{L"CompanyName", L"Microsoft Corporation"}, {L"FileDescription", L"Needed"}}));
    init();
    CHECK(list.image(0) == iconOk);
    desktop.messageBoxAnswers = {IDOK};
    press(page, 103);
    CHECK(desktop.messageBoxes.at(0).text ==
          L"Unwilling to perform. Deleting the 'Needed' will cause serious problems that will require you to "
          L"reinstall your operating system.");
    CHECK(desktop.messageBoxes.at(0).style == 48);
    CHECK(registry.hasKey(HKEY_LOCAL_MACHINE, notify + L"\\wlnotify"));
}

TEST_CASE_FIXTURE(Winlogon, "the same library elsewhere, or from another maker, can be deleted") {
    package(L"elsewhere",
            program(folder.file(L"wlnotify.dll"), {{L"CompanyName", L"Microsoft Corporation"}}));
    package(L"foreign", program(windows + L"\\system32\\wlnotify.dll", {{L"CompanyName", L"Contoso"}}));
    init();
    CHECK(list.image(0) == iconI);
    CHECK(list.image(1) == iconI);
}

TEST_CASE("six libraries are protected, in the system folder, from exactly Microsoft Corporation") {
    const std::wstring system = L"c:\\windows\\system32\\", microsoft = L"Microsoft Corporation";
    for (const wchar_t* name : {L"crypt32.dll", L"cryptnet.dll", L"cscdll.dll", L"sclgntfy.dll",
                                L"wlnotify.dll", L"wzcdlg.dll", L"CRYPT32.DLL"}) {
        CHECK(
            startup::isProtectedLibrary(L"C:\\Windows\\System32\\" + std::wstring(name), microsoft, system));
        CHECK_FALSE(startup::isProtectedLibrary(std::wstring(L"c:\\windows\\") + name, microsoft, system));
        CHECK_FALSE(startup::isProtectedLibrary(system + name, L"microsoft corporation", system));
        CHECK_FALSE(startup::isProtectedLibrary(name, microsoft, system));
    }
    CHECK_FALSE(startup::isProtectedLibrary(system + L"other.dll", microsoft, system));
    CHECK_FALSE(startup::isProtectedLibrary(L"", microsoft, system));
}

TEST_CASE_FIXTURE(Winlogon, "deleting removes the subkey with its values and subkeys, logs and tells") {
    package(L"evil", L"C:\\nowhere\\evil.dll");
    registry.setString(HKEY_LOCAL_MACHINE, notify + L"\\evil", L"Logon", L"OnLogon");
    registry.setString(HKEY_LOCAL_MACHINE, notify + L"\\evil\\deep\\er", L"x", L"y");
    package(L"other", L"C:\\nowhere\\other.dll");
    init();
    desktop.messageBoxAnswers = {IDOK, IDOK};
    press(page, 103);
    CHECK_FALSE(registry.hasKey(HKEY_LOCAL_MACHINE, notify + L"\\evil"));
    CHECK(registry.hasKey(HKEY_LOCAL_MACHINE, notify + L"\\other"));
    CHECK(desktop.messageBoxes.at(1).text ==
          L"'C:\\nowhere\\evil.dll' is deleted from startup successfully. ");
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].level == 5);
    CHECK(log.lines[0].source == L"");
    CHECK(log.lines[0].text ==
          L"Deleting Winlogon('evil', 'C:\\nowhere\\evil.dll', 'C:\\nowhere\\evil.dll')");
    CHECK(list.count() == 1);
}

TEST_CASE_FIXTURE(Winlogon, "a package gone before its deletion fails, with the log line and a refresh") {
    package(L"gone", L"C:\\nowhere\\gone.dll");
    init();
    helmkit::RegistryAccess().DeleteKey(helmkit::HKLM, notify + L"\\gone");
    desktop.messageBoxAnswers = {IDOK, IDOK};
    press(page, 103);
    CHECK(desktop.messageBoxes.at(1).text.find(L"Access denied. ") == 0);
    CHECK(log.lines.size() == 1);
    CHECK(list.count() == 0);
}

TEST_CASE_FIXTURE(Winlogon, "a REG_EXPAND_SZ DLLName is resolved once more with its references replaced") {
    program(windows + L"\\system32\\cscdll.dll", {{L"CompanyName", L"Microsoft Corporation"}});
    package(L"expanded", L"%windir%\\system32\\cscdll.dll", REG_EXPAND_SZ);
    package(L"plain", L"%windir%\\system32\\cscdll.dll");
    init();
    CHECK(list.image(0) == iconOk);
    CHECK(list.image(1) == iconI);
}

TEST_CASE_FIXTURE(Winlogon, "the events summary names a package's events in a fixed order") {
    for (const wchar_t* event : {L"Unlock", L"Logon", L"logoff"}) {
        registry.setString(HKEY_LOCAL_MACHINE, notify + L"\\p", event, L"Handler");
    }
    registry.setString(HKEY_LOCAL_MACHINE, notify + L"\\none", L"DLLName", L"x");
    CHECK(startup::ucWinlogon::eventsSummary(L"p") == L"Logoff, Logon, Unlock");
    registry.setBytes(HKEY_LOCAL_MACHINE, notify + L"\\untyped", L"Logon", REG_NONE, "");
    CHECK(startup::ucWinlogon::eventsSummary(L"untyped") == L"Logon");
    CHECK(startup::ucWinlogon::eventsSummary(L"none") == L"");
    CHECK(startup::ucWinlogon::eventsSummary(L"missing") == L"");
    for (const wchar_t* event :
         {L"Lock", L"Shutdown", L"StartScreenSaver", L"StartShell", L"Startup", L"StopScreenSaver"}) {
        registry.setNumber(HKEY_LOCAL_MACHINE, notify + L"\\p", event, 1);
    }
    CHECK(startup::ucWinlogon::eventsSummary(L"p") ==
          L"Lock, Logoff, Logon, Shutdown, StartScreenSaver, StartShell, Startup, StopScreenSaver, Unlock");
}
