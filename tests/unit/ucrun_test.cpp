#include <doctest/doctest.h>

#include "files/windows_folders.h"
#include "helmkit/client/logger.h"
#include "helmkit/client/records.h"
#include "startup/protected_programs.h"
#include "startup/ucRun.h"
#include "tests/support/page_fixture.h"
#include "win32/files/files.h"
#include "win32/registry/registry.h"

namespace {

const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const std::wstring policy = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\policies\\Explorer\\Run";
const int iconOk = 1, iconIe = 2;

struct General : PageFixture {
    PageOf<startup::ucRun> page{parent.handle()};
    win32::ListView& list = page.ListViewObject();

    General() { ::SetWindowPos(page.handle(), nullptr, 0, 0, 400, 260, SWP_NOZORDER); }

    void init() {
        helmkit::Logger logger = log.logger();
        page.Init(logger);
    }
    void machine(const std::wstring& name, const std::wstring& data, DWORD type = REG_SZ) {
        registry.setString(HKEY_LOCAL_MACHINE, run, name, data, type);
    }
    std::vector<std::wstring> names() {
        std::vector<std::wstring> texts;
        for (int row = 0; row < list.count(); ++row) texts.push_back(list.text(row, 0));
        return texts;
    }
    int rowOf(const std::wstring& name) {
        for (int row = 0; row < list.count(); ++row) {
            if (list.text(row, 0) == name) return row;
        }
        FAIL_CHECK("no row " << win32::toUtf8(name));
        return 0;
    }
    std::wstring field(int row, const std::wstring& name) { return page.itemOf(row).record().text(name); }
    // The icon of a row for a Microsoft file at `path`.
    int iconOfMicrosoftFile(const std::wstring& path) {
        program(path, {{L"CompanyName", L"Microsoft Corporation"}, {L"FileDescription", L"The program"}});
        machine(L"value", path);
        init();
        int image = list.image(rowOf(L"The program"));
        ::DeleteFileW(path.c_str());
        return image;
    }
};

}  // namespace

TEST_CASE_FIXTURE(General, "the eleven places are listed in their order") {
    const std::wstring base = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\";
    const std::pair<HKEY, std::wstring> places[] = {{HKEY_LOCAL_MACHINE, base + L"Run"},
                                                    {HKEY_CURRENT_USER, base + L"Run"},
                                                    {HKEY_LOCAL_MACHINE, base + L"RunServices"},
                                                    {HKEY_CURRENT_USER, base + L"RunServices"},
                                                    {HKEY_LOCAL_MACHINE, base + L"RunOnce"},
                                                    {HKEY_CURRENT_USER, base + L"RunOnce"},
                                                    {HKEY_LOCAL_MACHINE, base + L"RunOnce\\Setup"},
                                                    {HKEY_LOCAL_MACHINE, base + L"RunServicesOnce"},
                                                    {HKEY_CURRENT_USER, base + L"RunServicesOnce"},
                                                    {HKEY_LOCAL_MACHINE, policy},
                                                    {HKEY_CURRENT_USER, policy}};
    std::vector<std::wstring> expected;
    for (size_t i = 0; i < std::size(places); ++i) {
        std::wstring command = L"C:\\nowhere\\" + std::to_wstring(i) + L".exe";
        std::wstring name = i < 9 ? L"value" + std::to_wstring(i) : command;
        registry.setString(places[i].first, places[i].second, L"value" + std::to_wstring(i), command);
        expected.push_back(name);
    }
    registry.setString(HKEY_CURRENT_USER, base + L"RunOnce\\Setup", L"not read", L"x");
    init();
    CHECK(names() == expected);
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(General, "a record carries hive and key path under their crossed names") {
    machine(L"a", L"C:\\nowhere\\a.exe -x");
    registry.setString(HKEY_CURRENT_USER, run, L"b", L"C:\\nowhere\\b.exe");
    init();
    REQUIRE(list.count() == 2);
    const helmkit::Record& item = page.itemOf(0).record();
    CHECK(item.Name() == L"a");
    CHECK(item.text(L"Name") == L"a");
    CHECK(item.text(L"DLL") == L"C:\\nowhere\\a.exe");
    CHECK(item.text(L"Manufacturer") == L"");
    CHECK(item.number(L"Key") == static_cast<LONG>(0x80000002));
    CHECK(item.text(L"Hive") == run);
    CHECK(item.text(L"ValueName") == L"a");
    CHECK(item.text(L"Icon") == L"IE");
    CHECK(page.itemOf(1).record().number(L"Key") == static_cast<LONG>(0x80000001));
}

TEST_CASE_FIXTURE(General, "ordinary entries are named by description, else by value") {
    const VersionStrings productOnly = {
        {L"ProductName", L"P"}, {L"ProductDescription", L"D"}, {L"CompanyName", L"C"}};
    machine(L"v1",
            program(folder.file(L"1.exe"), {{L"FileDescription", L"Described"}, {L"CompanyName", L"Maker"}}));
    machine(L"v2", program(folder.file(L"2.exe"), productOnly));
    machine(L"v3", program(folder.file(L"3.exe")));
    machine(L"v4", L"");
    init();
    CHECK(names() == std::vector<std::wstring>{L"Described", L"v2", L"v3", L"v4"});
    CHECK(list.text(0, 1) == L"Maker");
    CHECK(list.text(1, 1) == L"C");
    CHECK(list.text(2, 1) == L"Not specified");
    CHECK(field(2, L"Manufacturer") == L"");
    CHECK(field(3, L"DLL") == L"");
    for (int row = 0; row < 4; ++row) CHECK(list.image(row) == iconIe);
}

TEST_CASE_FIXTURE(General, "policy entries have a naming rule of their own") {
    auto add = [&](const std::wstring& name, const std::wstring& command) {
        registry.setString(HKEY_LOCAL_MACHINE, policy, name, command);
    };
    add(L"1", program(folder.file(L"1.exe"), {{L"FileDescription", L"Described"}, {L"ProductName", L"P"}}));
    add(L"2",
        program(folder.file(L"2.exe"), {{L"ProductName", L"P"}, {L"ProductDescription", L"Of the product"}}));
    add(L"3", program(folder.file(L"3.exe"), {{L"ProductName", L"P"}}));
    const std::wstring plain = program(folder.file(L"4.exe")) + L" -switch";
    add(L"4", plain);
    add(L"5", L"");
    init();
    CHECK(names() ==
          std::vector<std::wstring>{L"Described", L"Of the product", L"", plain, L"Not specified"});
    CHECK(field(4, L"DLL") == L"");
    list.select(4);
    CHECK(fileBox(page) == L"Startup program is improperly configured");
}

TEST_CASE_FIXTURE(General, "a policy value that is no string counts as an empty command") {
    const std::string strings("a\0.\0e\0x\0e\0\0\0\0\0", 14);
    registry.setNumber(HKEY_LOCAL_MACHINE, policy, L"number", 17);
    registry.setBytes(HKEY_LOCAL_MACHINE, policy, L"strings", REG_MULTI_SZ, strings);
    registry.setNumber(HKEY_LOCAL_MACHINE, run, L"number", 17);
    registry.setBytes(HKEY_LOCAL_MACHINE, run, L"strings", REG_MULTI_SZ, strings);
    registry.setBytes(HKEY_LOCAL_MACHINE, run, L"odd type", 0xDEAD, strings);
    init();
    CHECK(names() ==
          std::vector<std::wstring>{L"number", L"odd type", L"strings", L"Not specified", L"Not specified"});
    for (int row = 0; row < 5; ++row) CHECK(field(row, L"DLL") == L"");
}

TEST_CASE_FIXTURE(General,
                  "ctfmon.exe is protected only in the system folder and only from Microsoft Corporation") {
    std::wstring system = win32::longPath(windows + L"\\system32") + L"\\";
    CHECK(iconOfMicrosoftFile(system + L"CTFMON.EXE") == iconOk);
    CHECK(iconOfMicrosoftFile(folder.file(L"ctfmon.exe")) == iconIe);
    machine(L"value", program(system + L"ctfmon.exe", {{L"CompanyName", L"microsoft corporation"}}));
    init();
    CHECK(list.image(rowOf(L"value")) == iconIe);
}

TEST_CASE_FIXTURE(General, "the protected programs differ between the families") {
    auto isProtected = [&](DWORD version, const std::wstring& file) {
        desktop.windowsVersion = version;
        return startup::isProtectedProgram(file, L"Microsoft Corporation", files::GetWindowsFolders());
    };
    // Whether a file is protected on Windows 98, and on XP.
    auto where = [&](const std::wstring& file) {
        return std::wstring(isProtected(ScriptedDesktop::windows98, file) ? L"98 " : L"") +
               (isProtected(ScriptedDesktop::windowsXp, file) ? L"XP" : L"");
    };
    CHECK(where(programs + L"\\Messenger\\MSMSGS.EXE") == L"98 XP");
    CHECK(where(windows + L"\\system\\ctfmon.exe") == L"98 ");
    CHECK(where(windows + L"\\system32\\ctfmon.exe") == L"XP");
    CHECK(where(windows + L"\\system32\\internat.exe") == L"XP");
    CHECK(where(windows + L"\\system\\internat.exe") == L"");
    for (const wchar_t* name : {L"powrprof.dll", L"systray.exe", L"mstask.exe"}) {
        CHECK(where(windows + L"\\system\\" + name) == L"98 ");
        CHECK(where(windows + L"\\system32\\" + name) == L"");
    }
    for (const wchar_t* name : {L"scanregw.exe", L"taskmon.exe"}) {
        CHECK(where(windows + L"\\" + name) == L"98 ");
        CHECK(where(windows + L"\\system\\" + name) == L"");
    }
    CHECK(where(windows + L"\\system32\\other.exe") == L"");
}

TEST_CASE_FIXTURE(General, "an empty manufacturer or another one protects nothing") {
    for (const wchar_t* maker : {L"", L"Microsoft", L"microsoft corporation", L"Microsoft Corporation "}) {
        CHECK_FALSE(startup::isProtectedProgram(L"c:\\w\\system32\\ctfmon.exe", maker,
                                                {L"c:\\w\\", L"c:\\w\\system32\\"}));
    }
}

TEST_CASE_FIXTURE(General, "a REG_EXPAND_SZ command is resolved once more where its own name is no file") {
    program(windows + L"\\system32\\ctfmon.exe", {{L"CompanyName", L"Microsoft Corporation"}});
    const std::wstring path = win32::longPath(windows + L"\\system32\\ctfmon.exe");
    machine(L"a expanded", L"%windir%\\system32\\ctfmon.exe", REG_EXPAND_SZ);
    machine(L"b plain", L"%windir%\\system32\\ctfmon.exe", REG_SZ);
    machine(L"c missing", L"%windir%\\system32\\missing.exe", REG_EXPAND_SZ);
    init();
    int expanded = rowOf(L"a expanded"), plain = rowOf(L"b plain"), missing = rowOf(L"c missing");
    CHECK(field(expanded, L"DLL") == path);
    CHECK(list.image(expanded) == iconOk);
    CHECK(field(plain, L"DLL") == L"%windir%\\system32\\ctfmon.exe");
    CHECK(list.image(plain) == iconIe);
    CHECK(field(missing, L"DLL") == L"%windir%\\system32\\missing.exe");
}

TEST_CASE_FIXTURE(General, "a file whose name looks like a reference is found before what it refers to") {
    const Variable other(L"QuillonName", L"other");
    program(folder.file(L"%QuillonName%.exe"), {{L"CompanyName", L"Its Maker"}});
    program(folder.file(L"other.exe"), {{L"CompanyName", L"Another Maker"}});
    machine(L"a", folder.file(L"%QuillonName%.exe"), REG_EXPAND_SZ);
    init();
    CHECK(field(rowOf(L"a"), L"DLL") == win32::longPath(folder.file(L"%QuillonName%.exe")));
    CHECK(field(rowOf(L"a"), L"Manufacturer") == L"Its Maker");
}

TEST_CASE_FIXTURE(General, "behind rundll32 the library's own name is expanded, not the command") {
    Variable systemRoot(L"SystemRoot", windows);
    program(windows + L"\\system32\\rundll32.exe", {{L"CompanyName", L"Microsoft Corporation"}});
    program(windows + L"\\system32\\x.dll", {{L"CompanyName", L"Library Maker"}});
    const std::wstring host = L"%SystemRoot%\\system32\\rundll32.exe ";
    machine(L"a missing", host + L"missing.dll,Start", REG_EXPAND_SZ);
    machine(L"b present", host + L"%SystemRoot%\\system32\\x.dll,Start", REG_EXPAND_SZ);
    machine(L"c plain", host + L"%SystemRoot%\\system32\\x.dll,Start", REG_SZ);
    init();
    CHECK(field(rowOf(L"a missing"), L"DLL") == L"missing.dll");
    CHECK(field(rowOf(L"a missing"), L"Manufacturer") == L"");
    CHECK(field(rowOf(L"b present"), L"DLL") == win32::longPath(windows + L"\\system32\\x.dll"));
    CHECK(field(rowOf(L"b present"), L"Manufacturer") == L"Library Maker");
    CHECK(field(rowOf(L"c plain"), L"DLL") == L"%SystemRoot%\\system32\\x.dll");
}

TEST_CASE_FIXTURE(General,
                  "the same name under both hives gives two rows, and deleting one leaves the other") {
    machine(L"same", L"C:\\nowhere\\m.exe");
    registry.setString(HKEY_CURRENT_USER, run, L"same", L"C:\\nowhere\\u.exe");
    init();
    REQUIRE(list.count() == 2);
    list.select(1);
    desktop.messageBoxAnswers = {IDOK, IDOK};
    press(page, 103);
    CHECK(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"same"));
    CHECK_FALSE(registry.hasValue(HKEY_CURRENT_USER, run, L"same"));
    REQUIRE(list.count() == 1);
    CHECK(field(0, L"DLL") == L"C:\\nowhere\\m.exe");
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].text ==
          L"Deleting common(HKEY_CURRENT_USER, '" + run + L"', 'C:\\nowhere\\u.exe', 0, 0)");
}

TEST_CASE_FIXTURE(General, "the log line holds size and checksum, taken before deleting") {
    const std::wstring path = folder.file(L"two.bin");
    TempFolder::write(path, std::string("\x01\x01"));
    machine(L"two", path);
    init();
    desktop.messageBoxAnswers = {IDOK, IDOK};
    press(page, 103);
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].level == 5);
    CHECK(log.lines[0].code == 0);
    CHECK(log.lines[0].source == L"");
    CHECK(log.lines[0].text == L"Deleting common(HKEY_LOCAL_MACHINE, '" + run + L"', '" +
                                   win32::longPath(path) + L"', 2, 1073741825)");
    CHECK(registry.hasKey(HKEY_LOCAL_MACHINE, run));
    CHECK(registry.valueCount(HKEY_LOCAL_MACHINE, run) == 0);
    CHECK(win32::fileExists(path));
}

TEST_CASE_FIXTURE(General, "the default value is listed without a name and deleted alone") {
    machine(L"", L"C:\\nowhere\\d.exe");
    machine(L"other", L"C:\\nowhere\\o.exe");
    init();
    int row = rowOf(L"");
    list.select(row);
    desktop.messageBoxAnswers = {IDOK, IDOK};
    press(page, 103);
    CHECK(desktop.messageBoxes[0].text == L"Are you sure you want to delete '' from startup?");
    CHECK_FALSE(registry.hasValue(HKEY_LOCAL_MACHINE, run, L""));
    CHECK(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"other"));
}

TEST_CASE_FIXTURE(General, "a name with an inner NUL is listed, its deletion fails and touches nothing") {
    machine(L"a", L"C:\\nowhere\\a.exe");
    registry.setCounted(HKEY_LOCAL_MACHINE, run, std::wstring_view(L"a\0b", 3), REG_SZ,
                        std::string("x\0\0\0", 4));
    init();
    REQUIRE(list.count() == 2);
    for (int row : {0, 1}) {
        if (page.itemOf(row).record().text(L"ValueName").size() == 3) list.select(row);
    }
    CHECK(page.itemOf(list.selected()).record().text(L"ValueName").size() == 3);
    desktop.messageBoxAnswers = {IDOK, IDOK};
    press(page, 103);
    CHECK(desktop.messageBoxes[1].text.find(L"Access denied. ") == 0);
    CHECK(registry.valueCount(HKEY_LOCAL_MACHINE, run) == 2);
    CHECK(list.count() == 2);
}

TEST_CASE_FIXTURE(
    General, "a value gone before its deletion gives the failure message, the same log line and a refresh") {
    machine(L"a", L"C:\\nowhere\\a.exe");
    machine(L"b", L"C:\\nowhere\\b.exe");
    init();
    list.select(rowOf(L"a"));
    win32::RegistryKey key;
    REQUIRE(key.open(HKEY_LOCAL_MACHINE, run, KEY_ALL_ACCESS) == ERROR_SUCCESS);
    REQUIRE(key.deleteValue(L"a") == ERROR_SUCCESS);
    desktop.messageBoxAnswers = {IDOK, IDOK};
    press(page, 103);
    CHECK(desktop.messageBoxes[1].text ==
          L"Access denied. You must be logged in as an administrator when disabling this startup program. ");
    CHECK(desktop.messageBoxes[1].style == 48);
    CHECK(log.lines.size() == 1);
    CHECK(names() == std::vector<std::wstring>{L"b"});
}
