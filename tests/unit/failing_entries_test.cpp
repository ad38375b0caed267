// What fails is told once, under the right source, and costs only itself: on every page and in the window.
#include <doctest/doctest.h>

#include "app/FMain.h"
#include "app/main_menu.h"
#include "startup/ucOther.h"
#include "startup/ucRun.h"
#include "startup/ucServices.h"
#include "startup/ucWinlogon.h"
#include "tests/support/failing_classes.h"
#include "tests/support/page_fixture.h"
#include "win32/files/file_search.h"
#include "win32/system/system.h"

namespace {

const std::wstring currentVersion = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\";
const std::wstring run = currentVersion + L"Run", runOnce = currentVersion + L"RunOnce";
const std::wstring policy = currentVersion + L"policies\\Explorer\\Run";
const std::wstring notify = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify";
const std::wstring winlogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
const std::wstring services = L"SYSTEM\\CurrentControlSet\\Services";
const std::wstring runOnceEx = currentVersion + L"RunOnceEx";

struct Failing : PageFixture {
    FailingClasses failing{classes};
    helmkit::Logger logger = log.logger();

    void value(HKEY hive, const std::wstring& key, const std::wstring& name, const std::wstring& text) {
        registry.setString(hive, key, name, text);
    }
    std::wstring names(startup::StartupListControl& page) {
        std::wstring names;
        for (const auto& row : page.rows()) names += row.text + L"; ";
        return names;
    }
    // The one line since the last look, which is to be of level 4 and to tell what was refused.
    std::wstring sourceOfTheLine(const std::wstring& what) {
        REQUIRE(log.lines.size() == 1);
        const LogLine line = log.lines[0];
        log.lines.clear();
        CHECK(line.level == 4);
        CHECK(line.code == static_cast<LONG>(0x80070005));
        CHECK(line.text.find(what) == 0);
        return line.source;
    }
    void refuse(const std::wstring& what) { refused() = {what}; }

    // A page of each category with one entry, under its type's name.
    struct Shown {
        const wchar_t* type;
        std::unique_ptr<startup::StartupListControl> page;
    };
    std::vector<Shown> onePageEach() {
        value(HKEY_LOCAL_MACHINE, run, L"a", L"C:\\nowhere\\a.exe");
        value(HKEY_LOCAL_MACHINE, notify + L"\\p", L"DLLName", L"C:\\nowhere\\p.dll");
        value(HKEY_LOCAL_MACHINE, winlogon, L"shell", L"evil.exe");
        value(HKEY_LOCAL_MACHINE, services + L"\\s", L"ImagePath", L"C:\\nowhere\\s.sys");
        std::vector<Shown> shown;
        shown.push_back({L"ucRun", std::make_unique<PageOf<startup::ucRun>>(parent.handle())});
        shown.push_back({L"ucWinlogon", std::make_unique<PageOf<startup::ucWinlogon>>(parent.handle())});
        shown.push_back({L"ucOther", std::make_unique<PageOf<startup::ucOther>>(parent.handle())});
        shown.push_back({L"ucServices", std::make_unique<PageOf<startup::ucServices>>(parent.handle())});
        for (auto& one : shown) one.page->Init(logger);
        return shown;
    }
};

}  // namespace

TEST_CASE_FIXTURE(Failing,
                  "general: a value that cannot be read is skipped, a key that cannot be listed too") {
    for (const wchar_t* name : {L"a", L"b", L"c"})
        value(HKEY_LOCAL_MACHINE, run, name, L"C:\\nowhere\\x.exe");
    value(HKEY_CURRENT_USER, runOnce, L"later", L"C:\\nowhere\\y.exe");
    PageOf<startup::ucRun> page(parent.handle());
    refuse(L"ReadValue " + run + L"\\b");
    page.Init(logger);
    CHECK(sourceOfTheLine(*refused().begin()) == L"ucRun.FillItemInfo");
    CHECK(names(page) == L"a; c; later; ");
    refuse(L"EnumValues " + run);
    page.RefreshList();
    // The key is refused under both hives.
    REQUIRE(log.lines.size() == 2);
    for (const LogLine& line : log.lines) CHECK(line.source == L"ucRun.EnumItems");
    CHECK(names(page) == L"later; ");
}

TEST_CASE_FIXTURE(Failing,
                  "a value's type is asked for where its text may refer to a variable, nowhere else") {
    value(HKEY_LOCAL_MACHINE, run, L"a", L"C:\\nowhere\\a.exe");
    value(HKEY_LOCAL_MACHINE, run, L"b", L"%QuillonNone%\\b.exe");
    value(HKEY_LOCAL_MACHINE, policy, L"c", L"C:\\nowhere\\c.exe");
    value(HKEY_LOCAL_MACHINE, notify + L"\\p", L"DLLName", L"p.dll");
    value(HKEY_LOCAL_MACHINE, services + L"\\s", L"ImagePath", L"C:\\nowhere\\s.sys");
    std::wstring asked;
    whenAsked() = [&](const std::wstring& what) {
        if (what.find(L"ValueType ") == 0) asked += what + L"; ";
    };
    PageOf<startup::ucRun>(parent.handle()).Init(logger);
    PageOf<startup::ucWinlogon>(parent.handle()).Init(logger);
    PageOf<startup::ucServices>(parent.handle()).Init(logger);
    CHECK(asked == L"ValueType " + run + L"\\b; ");
}

TEST_CASE_FIXTURE(Failing,
                  "general: an error in the policy builder ends the enumeration, what was found stays") {
    value(HKEY_LOCAL_MACHINE, run, L"a", L"C:\\nowhere\\a.exe");
    for (const wchar_t* name : {L"1", L"2", L"3"}) value(HKEY_LOCAL_MACHINE, policy, name, name);
    value(HKEY_CURRENT_USER, policy, L"user's", L"u");
    PageOf<startup::ucRun> page(parent.handle());
    refuse(L"ReadValue " + policy + L"\\2");
    page.Init(logger);
    CHECK(sourceOfTheLine(*refused().begin()) == L"ucRun.EnumItems");
    CHECK(names(page) == L"a; 1; ");
}

TEST_CASE_FIXTURE(Failing, "Winlogon: a package that cannot be read is skipped") {
    for (const wchar_t* name : {L"a", L"b", L"c"}) {
        value(HKEY_LOCAL_MACHINE, notify + L"\\" + name, L"DLLName", std::wstring(name) + L".dll");
    }
    PageOf<startup::ucWinlogon> page(parent.handle());
    refuse(L"ReadValue " + notify + L"\\b\\DLLName");
    page.Init(logger);
    CHECK(sourceOfTheLine(*refused().begin()) == L"ucWinlogon.FillItemInfo");
    CHECK(names(page) == L"a.dll; c.dll; ");
    refuse(L"EnumSubkeys " + notify);
    page.RefreshList();
    CHECK(sourceOfTheLine(*refused().begin()) == L"ucWinlogon.EnumItems");
    CHECK(names(page) == L"");
}

TEST_CASE_FIXTURE(Failing, "services: one that cannot be read is skipped") {
    for (const wchar_t* name : {L"a", L"b", L"c"}) {
        value(HKEY_LOCAL_MACHINE, services + L"\\" + name, L"ImagePath",
              std::wstring(L"C:\\nowhere\\") + name);
    }
    PageOf<startup::ucServices> page(parent.handle());
    for (const wchar_t* name : {L"ImagePath", L"DisplayName"}) {
        refuse(L"ReadValue " + services + L"\\b\\" + name);
        page.Init(logger);
        CHECK(sourceOfTheLine(*refused().begin()) == L"ucServices.FillItemInfo");
        CHECK(names(page) == L"C:\\nowhere\\a.exe; C:\\nowhere\\c.exe; ");
    }
    refuse(L"EnumSubkeys " + services);
    page.RefreshList();
    CHECK(sourceOfTheLine(*refused().begin()) == L"ucServices.EnumItems");
}

TEST_CASE_FIXTURE(Failing,
                  "custom: a place that cannot be read is skipped, an ini file for each of its lines") {
    value(HKEY_LOCAL_MACHINE, winlogon, L"shell", L"evil.exe");
    value(HKEY_LOCAL_MACHINE, winlogon, L"VmApplet", L"evil.exe");
    registry.makeKey(HKEY_LOCAL_MACHINE, runOnceEx + L"\\1");
    TempFolder::write(windows + L"\\win.ini", "load=x\r\nrun=y\r\n");
    TempFolder::write(windows + L"\\system.ini", "shell=z\r\n");
    PageOf<startup::ucOther> page(parent.handle());
    refuse(L"ReadValue " + winlogon + L"\\shell");
    page.Init(logger);
    CHECK(sourceOfTheLine(*refused().begin()) == L"ucOther.EnumItems");
    CHECK(page.rows().size() == 5);
    refuse(L"EnumSubkeys " + runOnceEx);
    page.RefreshList();
    CHECK(log.lines.size() == 2);  // under both hives
    CHECK(page.rows().size() == 5);
    log.lines.clear();
    refuse(L"ReadTextFile " + win32::lowered(windows) + L"\\win.ini");
    page.RefreshList();
    REQUIRE(log.lines.size() == 2);
    for (const LogLine& line : log.lines) CHECK(line.source == L"ucOther.EnumItems");
    CHECK(page.rows().size() == 4);
}

TEST_CASE_FIXTURE(Failing, "every page: a failing folder ends the enumeration, a failing list the refresh") {
    auto pages = onePageEach();
    for (auto& [type, page] : pages) {
        CAPTURE(win32::toUtf8(type));
        CHECK(page->rows().size() == 1);
        refuse(L"ExpandEnvironment");
        page->RefreshList();
        CHECK(sourceOfTheLine(*refused().begin()) == std::wstring(type) + L".EnumItems");
        CHECK(page->rows().empty());
        refused().clear();
        page->RefreshList();
        CHECK(page->rows().size() == 1);
    }
    classes.revoke();
    for (auto& [type, page] : pages) {
        page->RefreshList();
        REQUIRE(log.lines.size() == 1);
        CHECK(log.lines[0].source == std::wstring(type) + L".RefreshList");
        CHECK(log.lines[0].level == 4);
        log.lines.clear();
    }
}

TEST_CASE_FIXTURE(Failing, "a failed refresh leaves the rows that were added before the error") {
    for (const wchar_t* name : {L"a", L"b", L"c"})
        value(HKEY_LOCAL_MACHINE, run, name, L"C:\\nowhere\\x.exe");
    PageOf<startup::ucRun> page(parent.handle());
    page.Init(logger);
    CHECK(names(page) == L"a; b; c; ");
    refuse(L"Field Name of b");
    page.RefreshList();
    CHECK(sourceOfTheLine(L"Field Name of b") == L"ucRun.RefreshList");
    CHECK(names(page) == L"a; ");
    refused().clear();
    page.RefreshList();
    CHECK(names(page) == L"a; b; c; ");
}

TEST_CASE_FIXTURE(Failing,
                  "every page: selection, keys, menu, Delete and Properties name their own procedure") {
    auto pages = onePageEach();
    for (auto& [type, page] : pages) {
        CAPTURE(win32::toUtf8(type));
        const std::wstring name = type;
        HWND list = page->ListViewObject().window();
        const bool hasFiles = name != L"ucOther";
        refuse(L"Field DLL");
        if (hasFiles) {
            page->ListViewObject().select(-1);
            LVITEMW selected = {};
            selected.stateMask = LVIS_SELECTED;
            ::SendMessageW(list, LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&selected));
            log.lines.clear();
            page->ListViewObject().select(0);
            CHECK(sourceOfTheLine(L"Field DLL") == name + L".lv_ItemClick");
            NMITEMACTIVATE click = {};
            click.hdr = {list, 101, static_cast<UINT>(NM_RCLICK)};
            ::SendMessageW(page->handle(), WM_NOTIFY, 101, reinterpret_cast<LPARAM>(&click));
            CHECK(sourceOfTheLine(L"Field DLL") == name + L".lv_MouseUp");
            BYTE keys[256];
            ::GetKeyboardState(keys);
            keys[VK_MENU] = 0x80;
            ::SetKeyboardState(keys);
            ::SendMessageW(list, WM_SYSKEYUP, VK_RETURN, 0);
            keys[VK_MENU] = 0;
            ::SetKeyboardState(keys);
            CHECK(sourceOfTheLine(L"Field DLL") == name + L".lv_KeyUp");
            refuse(L"FileExists");
            desktop.popUpAnswers = {2};
            ::SendMessageW(page->handle(), WM_NOTIFY, 101, reinterpret_cast<LPARAM>(&click));
            CHECK(sourceOfTheLine(L"FileExists") == name + L".mnuProperties_Click");
        }
        refuse(name == L"ucServices" ? L"Field DLL" : L"FormatMessage");
        press(*page, 103);
        CHECK(sourceOfTheLine(*refused().begin()) == name + L".cmdDelete_Click");
        refused().clear();
    }
}

TEST_CASE_FIXTURE(Failing,
                  "custom: RunOnceEx subkeys deleted before an error stay deleted, and nothing is claimed") {
    for (const wchar_t* name : {L"1", L"2", L"3"}) {
        registry.makeKey(HKEY_CURRENT_USER, runOnceEx + L"\\" + name);
    }
    PageOf<startup::ucOther> page(parent.handle());
    page.Init(logger);
    refuse(L"DeleteKey " + runOnceEx + L"\\2");
    page.ListViewObject().select(0);
    desktop.messageBoxAnswers = {IDOK};
    press(page, 103);
    CHECK_FALSE(registry.hasKey(HKEY_CURRENT_USER, runOnceEx + L"\\1"));
    CHECK(registry.hasKey(HKEY_CURRENT_USER, runOnceEx + L"\\2"));
    CHECK(registry.hasKey(HKEY_CURRENT_USER, runOnceEx + L"\\3"));
    CHECK(desktop.messageBoxes.size() == 1);
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].source == L"ucOther.cmdDelete_Click");
    CHECK(log.lines[0].level == 4);
    for (const auto& file : win32::filesIn(win32::moduleFolder(nullptr) + L"\\Backup")) {
        if (file.name.find(L"Restored ") == 0) {
            win32::removeFile(win32::moduleFolder(nullptr) + L"\\Backup\\" + file.name);
        }
    }
}
