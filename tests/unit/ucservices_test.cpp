#include <doctest/doctest.h>

#include "helmkit/client/logger.h"
#include "startup/known_good_image_paths.h"
#include "startup/ucServices.h"
#include "tests/support/page_fixture.h"
#include "win32/base/text.h"
#include "win32/files/files.h"

namespace {

const std::wstring services = L"SYSTEM\\CurrentControlSet\\Services";
const int iconOk = 1, iconIe = 2;

struct Services : PageFixture {
    PageOf<startup::ucServices> page{parent.handle()};
    win32::ListView& list = page.ListViewObject();
    Variable systemRoot{L"SystemRoot", windows};

    void init() {
        helmkit::Logger logger = log.logger();
        page.Init(logger);
    }
    void service(const std::wstring& name, const std::wstring& imagePath,
                 const std::wstring& displayName = {}) {
        registry.setString(HKEY_LOCAL_MACHINE, services + L"\\" + name, L"ImagePath", imagePath,
                           REG_EXPAND_SZ);
        if (!displayName.empty()) {
            registry.setString(HKEY_LOCAL_MACHINE, services + L"\\" + name, L"DisplayName", displayName);
        }
    }
    void releaseRightButton() {
        NMITEMACTIVATE click = {};
        click.hdr = {list.window(), 101, static_cast<UINT>(NM_RCLICK)};
        ::SendMessageW(page.handle(), WM_NOTIFY, 101, reinterpret_cast<LPARAM>(&click));
    }
};

}  // namespace

TEST_CASE("known-good image paths are compared whole, lower-cased and otherwise raw") {
    using startup::IsKnownGoodImagePath;
    CHECK(IsKnownGoodImagePath(L"\\SystemRoot\\System32\\drivers\\afd.sys"));
    CHECK(IsKnownGoodImagePath(L"\\SystemRoot\\System32\\drivers\\AFD.SYS"));
    CHECK_FALSE(IsKnownGoodImagePath(L"C:\\WINDOWS\\System32\\drivers\\afd.sys"));
    CHECK(IsKnownGoodImagePath(L"%SystemRoot%\\System32\\svchost.exe -k netsvcs"));
    CHECK_FALSE(IsKnownGoodImagePath(L"%SystemRoot%\\System32\\svchost.exe  -k netsvcs"));
    CHECK_FALSE(IsKnownGoodImagePath(L"%SystemRoot%\\System32\\svchost.exe -k netsvcs "));
    CHECK(IsKnownGoodImagePath(L"c:\\windows\\system32\\svchost.exe -k netsvcs"));
    CHECK_FALSE(IsKnownGoodImagePath(L"c:\\windows\\system32\\svchost.exe -k localservice"));
    CHECK(IsKnownGoodImagePath(L"system32\\drivers\\cdrom.sys"));
    CHECK(IsKnownGoodImagePath(L"\"C:\\Program Files\\Common Files\\Microsoft Shared\\VS7Debug\\mdm.exe\""));
    CHECK_FALSE(IsKnownGoodImagePath(L""));
}

TEST_CASE_FIXTURE(Services, "the page has its own texts and only Properties on its button") {
    init();
    CHECK(win32::windowText(control(page, 104)) ==
          L"Detected Services and Device Drivers (standard services and drivers are skipped):");
    CHECK(win32::windowText(control(page, 103)) == L"&Properties");
    CHECK(win32::windowText(control(page, 105)) == L"Related File:");
}

TEST_CASE_FIXTURE(Services, "services without an image path and known-good ones are skipped") {
    service(L"a", L"\\SystemRoot\\System32\\drivers\\afd.sys", L"AFD");
    service(L"b", L"");
    registry.makeKey(HKEY_LOCAL_MACHINE, services + L"\\c");
    service(L"d", L"C:\\nowhere\\d.exe -x");
    registry.setNumber(HKEY_LOCAL_MACHINE, services + L"\\d", L"Start", 4);
    init();
    REQUIRE(list.count() == 1);
    CHECK(list.text(0, 0) == L"C:\\nowhere\\d.exe");
    CHECK(list.image(0) == iconIe);
    CHECK(page.itemOf(0).record().Name() == L"d");
    CHECK(page.itemOf(0).record().text(L"GridIcon") == L"IE");
}

TEST_CASE_FIXTURE(Services, "names: display name, description, product description, file name") {
    service(L"1", program(folder.file(L"1.sys"), {{L"FileDescription", L"D"}, {L"CompanyName", L"Maker"}}),
            L"Shown");
    service(L"2", program(folder.file(L"2.sys"), {{L"FileDescription", L"D"}, {L"ProductName", L"P"}}));
    service(L"3", program(folder.file(L"3.sys"), {{L"ProductName", L"P"}, {L"ProductDescription", L"Of P"}}));
    service(L"4", program(folder.file(L"4.sys"), {{L"ProductName", L"P"}}));
    service(L"5", program(folder.file(L"5.sys")));
    init();
    REQUIRE(list.count() == 5);
    const std::vector<std::wstring> names = {L"Shown", L"D", L"Of P", L"",
                                             win32::longPath(folder.file(L"5.sys"))};
    for (int row = 0; row < 5; ++row) CHECK(list.text(row, 0) == names[row]);
    CHECK(list.text(0, 1) == L"Maker");
    CHECK(list.text(1, 1) == L"Not specified");
}

TEST_CASE_FIXTURE(Services, "image paths in the forms that drivers and services have") {
    ::CreateDirectoryW((windows + L"\\system32\\drivers").c_str(), nullptr);
    const std::wstring driver = win32::longPath(program(windows + L"\\system32\\drivers\\foo.sys"));
    service(L"1", L"\\SystemRoot\\System32\\drivers\\foo.sys");
    service(L"2", L"\\??\\" + driver);
    service(L"3", L"\"" + driver + L"\" -k");
    service(L"4", L"%SystemRoot%\\system32\\drivers\\foo.sys");
    service(L"5", L"system32\\drivers\\unknown.sys");
    // Only the whole prefix of twelve characters is replaced.
    service(L"6", L"\\SystemRoot");
    init();
    REQUIRE(list.count() == 6);
    for (int row = 0; row < 4; ++row)
        CHECK(win32::lowered(page.itemOf(row).record().text(L"DLL")) == win32::lowered(driver));
    CHECK(page.itemOf(4).record().text(L"DLL") == L"system32\\drivers\\unknown.sys");
    CHECK(page.itemOf(5).record().text(L"DLL") == L"\\SystemRoot.exe");
}

TEST_CASE_FIXTURE(Services, "a protected system file only gets the other icon") {
    service(L"w",
            program(windows + L"\\system32\\wlnotify.dll", {{L"CompanyName", L"Microsoft Corporation"}}));
    init();
    CHECK(list.image(0) == iconOk);
    desktop.shellAnswers = {true};
    press(page, 103);
    CHECK(desktop.shellRequests.size() == 1);
}

TEST_CASE_FIXTURE(Services, "button and Delete open the properties and change nothing") {
    service(L"s", program(folder.file(L"s.exe")));
    init();
    desktop.shellAnswers = {true, true, true};
    press(page, 103);
    desktop.popUpAnswers = {1, 2};
    releaseRightButton();
    releaseRightButton();
    CHECK(desktop.shellRequests.size() == 3);
    CHECK(desktop.messageBoxes.empty());
    CHECK(log.lines.empty());
    CHECK(registry.hasValue(HKEY_LOCAL_MACHINE, services + L"\\s", L"ImagePath"));
    CHECK(desktop.popUps.at(0).captions == std::vector<std::wstring>{L"&Delete", L"", L"&Properties"});
}

TEST_CASE_FIXTURE(Services, "the button runs the Properties command of the selected row") {
    service(L"s", program(folder.file(L"s.exe")));
    service(L"t", program(folder.file(L"t.exe")));
    init();
    list.select(1);
    desktop.shellFailure = win32::Error(E_FAIL, L"no shell");
    press(page, 103);
    REQUIRE(desktop.shellRequests.size() == 1);
    CHECK(desktop.shellRequests[0].file == page.itemOf(1).file());
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].source == L"ucServices.mnuProperties_Click");
    CHECK(log.lines[0].text == L"no shell");
    CHECK(log.lines[0].level == 4);
}

TEST_CASE_FIXTURE(Services, "image paths and display names that are no strings count as empty") {
    const std::string strings("a\0\0\0\0\0", 6);
    registry.setBytes(HKEY_LOCAL_MACHINE, services + L"\\a", L"ImagePath", REG_MULTI_SZ, strings);
    registry.setNumber(HKEY_LOCAL_MACHINE, services + L"\\b", L"ImagePath", 5);
    service(L"c", L"C:\\nowhere\\c.sys");
    registry.setBytes(HKEY_LOCAL_MACHINE, services + L"\\c", L"DisplayName", REG_MULTI_SZ, strings);
    init();
    REQUIRE(list.count() == 1);
    CHECK(list.text(0, 0) == L"C:\\nowhere\\c.sys");
}

TEST_CASE_FIXTURE(Services,
                  "without a file: no Properties in the menu, the separator stays, the button does nothing") {
    service(L"s", L"/x", L"Nameless");
    init();
    REQUIRE(page.itemOf(0).record().text(L"DLL") == L"");
    desktop.popUpAnswers = {1};
    releaseRightButton();
    CHECK(desktop.popUps.at(0).captions == std::vector<std::wstring>{L"&Delete", L""});
    press(page, 103);
    CHECK(desktop.shellRequests.empty());
}

TEST_CASE_FIXTURE(Services, "a file that is gone is told") {
    service(L"s", L"C:\\nowhere\\s.exe");
    init();
    desktop.messageBoxAnswers = {IDOK};
    press(page, 103);
    CHECK(desktop.messageBoxes.at(0).text == L"File 'C:\\nowhere\\s.exe' not found. ");
}

TEST_CASE_FIXTURE(Services, "the context-menu key is dead on this page") {
    service(L"s", L"C:\\nowhere\\s.exe");
    init();
    ::SendMessageW(list.window(), WM_KEYUP, VK_APPS, 0);
    CHECK(desktop.popUps.empty());
}

TEST_CASE_FIXTURE(Services, "a display name that names a string in a file shows that string from Vista on") {
    service(L"1", L"C:\\nowhere\\1.exe", L"@x,-99999");
    service(L"2", L"C:\\nowhere\\2.exe", L"@\\\\server\\share\\x.dll,-100");
    service(L"3", L"C:\\nowhere\\3.exe", L"@plain");
    service(L"4", L"C:\\nowhere\\4.exe", L"@C:\\nowhere\\missing.dll,-3");
    wchar_t own[MAX_PATH];
    ::GetModuleFileNameW(nullptr, own, MAX_PATH);
    service(L"5", L"C:\\nowhere\\5.exe", L"@" + std::wstring(own) + L",-115");
    desktop.windowsVersion = 0x0A280006;
    init();
    REQUIRE(list.count() == 5);
    CHECK(list.text(1, 0) == L"@\\\\server\\share\\x.dll,-100");
    CHECK(list.text(2, 0) == L"@plain");
    CHECK(list.text(3, 0) == L"@C:\\nowhere\\missing.dll,-3");
    CHECK(list.text(4, 0) == L"Backup complete successfully.");
    desktop.windowsVersion = ScriptedDesktop::windowsXp;
    page.RefreshList();
    CHECK(list.text(4, 0) == L"@" + std::wstring(own) + L",-115");
}
