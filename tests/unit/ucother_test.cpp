#include <doctest/doctest.h>

#include "helmkit/client/logger.h"
#include "helmkit/client/registry_access.h"
#include "helmkit/registry_access.h"
#include "startup/browser_checks.h"
#include "startup/ucOther.h"
#include "tests/support/page_fixture.h"
#include "win32/com/com_server.h"
#include "win32/system/system.h"

namespace {

const std::wstring windowsKey = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Windows";
const std::wstring winlogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
const std::wstring sessionManager = L"SYSTEM\\CurrentControlSet\\Control\\Session Manager";
const std::wstring commandProcessor = L"SOFTWARE\\Microsoft\\Command Processor";
const std::wstring desktopKey = L"Control Panel\\Desktop";
const std::wstring runOnceEx = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx";
const std::wstring shellFolders = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
const std::wstring userShellFolders =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";
const int iconI = 0, iconOk = 1, iconIe = 2, none = -1;
const HKEY machine = HKEY_LOCAL_MACHINE, user = HKEY_CURRENT_USER;

struct Other : PageFixture {
    PageOf<startup::ucOther> page{parent.handle()};
    win32::ListView& list = page.ListViewObject();
    std::wstring winIni = windows + L"\\win.ini", systemIni = windows + L"\\system.ini";
    std::wstring sysDir = win32::lowered(windows) + L"\\system32\\";

    void init() {
        helmkit::Logger logger = log.logger();
        page.Init(logger);
    }
    std::wstring text(HKEY hive, const std::wstring& key, const std::wstring& name) {
        std::string bytes = registry.bytes(hive, key, name);
        std::wstring result(reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / 2);
        return result.substr(0, result.find(L'\0'));
    }
    // Selects the only row, deletes it with these answers and gives back the last message's text.
    std::wstring erase(std::deque<int> answers) {
        list.select(0);
        desktop.messageBoxAnswers = answers;
        press(page, 103);
        return desktop.messageBoxes.back().text;
    }
};

}  // namespace

TEST_CASE_FIXTURE(Other, "the page: two columns, the note, no file box and no context menu") {
    init();
    CHECK(list.count() == 0);
    CHECK(control(page, 102) == nullptr);
    CHECK(win32::windowText(control(page, 104)) == L"Detected Startup Programs:");
    CHECK(win32::windowText(control(page, 105)) == L"All settings containing empty values are skipped");
    CHECK(win32::windowText(control(page, 103)) == L"&Delete From Startup");
    NMITEMACTIVATE click = {};
    click.hdr = {list.window(), 101, static_cast<UINT>(NM_RCLICK)};
    ::SendMessageW(page.handle(), WM_NOTIFY, 101, reinterpret_cast<LPARAM>(&click));
    ::SendMessageW(list.window(), WM_KEYUP, VK_APPS, 0);
    CHECK(desktop.popUps.empty());
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Other, "registry places: row text, icon, what a restore writes") {
    const wchar_t vmApplet[] = L"rundll32 shell32,Control_RunDLL \"sysdm.cpl\"";
    struct Row {
        HKEY hive;
        std::wstring key, name, changed, atDefault, restored, description;
        int icon = iconI;
    };
    const Row rows[] = {
        {user, windowsKey, L"run", L"x.exe", L"", L"",
         L"\"run=\" parameter translated to registry for the user who is currently logged on"},
        {machine, windowsKey, L"run", L"x.exe", L"", L"",
         L"\"run=\" parameter translated to registry particular to the computer (for any user)"},
        {user, windowsKey, L"load", L"x.exe", L"", L"",
         L"\"load=\" parameter translated to registry for the user who is currently logged on"},
        {machine, windowsKey, L"load", L"x.exe", L"", L"",
         L"\"load=\" parameter translated to registry particular to the computer (for any user)"},
        {machine, winlogon, L"shell", L"explorer.exe,evil.exe", L"EXPLORER.exe", L"Explorer.exe",
         L"OS shell particular to the computer (for any user)"},
        {machine, winlogon, L"userinit", L"evil.exe", sysDir + L"UserInit.exe,", sysDir + L"userinit.exe,",
         L"Userinit for MSGina.dll"},
        {machine, sessionManager, L"BootExecute", L"evil", L"AutoCheck autochk *", L"autocheck autochk *",
         L"Session Manager startup programs"},
        {user, desktopKey, L"SCRNSAVE.EXE", L"marine.scr", L"(NONE)", L"(NONE)", L"Windows screen saver",
         iconIe},
        {machine, commandProcessor, L"AutoRun", L"x.cmd", L"", L"",
         L"Autorun for Command Processor particular to the computer (for any user)"},
        {machine, winlogon, L"VmApplet", L"evil", L"RunDLL32 shell32,Control_RunDLL \"SYSDM.CPL\"", vmApplet,
         L"Winlogon VmApplet"},
        {machine, winlogon, L"UIHost", L"evil", L"LogonUI.exe", L"logonui.exe",
         L"Logon user interface reference"},
    };
    for (const Row& row : rows) {
        CAPTURE(win32::toUtf8(row.description));
        log.lines.clear();
        desktop.messageBoxes.clear();
        registry.setString(row.hive, row.key, row.name, row.changed);
        init();
        REQUIRE(list.count() == 1);
        CHECK(list.text(0, 0) == row.description);
        CHECK(list.text(0, 1) == row.changed);
        CHECK(list.image(0) == row.icon);
        CHECK(erase({IDCANCEL}) ==
              L"Are you sure you want to delete excess startups from " + row.description + L"?");
        CHECK(desktop.messageBoxes.back().style == 49);
        CHECK(log.lines.empty());
        CHECK(text(row.hive, row.key, row.name) == row.changed);
        CHECK(erase({IDOK, IDOK}) == L"Startups are deleted successfully.");
        CHECK(desktop.messageBoxes.back().style == 64);
        CHECK(text(row.hive, row.key, row.name) == row.restored);
        REQUIRE(log.lines.size() == 1);
        CHECK(log.lines[0].text == L"Restored: " + row.description);
        CHECK(log.lines[0].source == L"ucOther.cmdDelete_Click");
        CHECK(log.lines[0].level == 5);
        CHECK(log.lines[0].code == 0);
        if (!row.atDefault.empty()) {
            registry.setString(row.hive, row.key, row.name, row.atDefault);
            page.RefreshList();
            REQUIRE(list.count() == 1);
            CHECK(list.image(0) == iconOk);
            CHECK(erase({IDOK}) ==
                  L"Unwilling to perform. " + row.description + L" doesn't contain excess startups.");
            CHECK(desktop.messageBoxes.back().style == 48);
            CHECK(text(row.hive, row.key, row.name) == row.atDefault);
        }
        registry.setString(row.hive, row.key, row.name, L"");
        page.RefreshList();
        CHECK(list.count() == 0);
    }
}

TEST_CASE_FIXTURE(Other, "a record has the place's texts, icon and number under their names") {
    registry.setString(machine, winlogon, L"shell", L"evil.exe");
    init();
    REQUIRE(list.count() == 1);
    const helmkit::Record& item = page.itemOf(0).record();
    CHECK(item.text(L"Name") == L"OS shell particular to the computer (for any user)");
    CHECK(item.text(L"Manufacturer") == L"evil.exe");
    CHECK(item.text(L"GridIcon") == L"i");
    CHECK(item.number(L"Place") == page.itemOf(0).place());
}

TEST_CASE_FIXTURE(Other, "UIHost is written only on Windows XP and deleted on any other version") {
    for (DWORD version :
         {ScriptedDesktop::windows2000, ScriptedDesktop::windows2003, ScriptedDesktop::windows98}) {
        desktop.windowsVersion = version;
        registry.setString(machine, winlogon, L"UIHost", L"evil");
        init();
        CHECK(erase({IDOK, IDOK}) == L"Startups are deleted successfully.");
        CHECK_FALSE(registry.hasValue(machine, winlogon, L"UIHost"));
    }
}

TEST_CASE_FIXTURE(Other, "registry values are not trimmed: a blank after the shell makes it a changed one") {
    registry.setString(machine, winlogon, L"shell", L"explorer.exe ");
    init();
    CHECK(list.image(0) == iconI);
}

TEST_CASE_FIXTURE(Other, "BootExecute is read as its strings and stays a multi-string when restored") {
    const std::wstring_view plain(L"autocheck autochk *\0\0", 21), more(L"autocheck autochk *\0evil\0\0", 26);
    auto bytes = [](std::wstring_view units) {
        return std::string_view(reinterpret_cast<const char*>(units.data()), units.size() * 2);
    };
    registry.setBytes(machine, sessionManager, L"BootExecute", REG_MULTI_SZ, bytes(plain));
    init();
    CHECK(list.text(0, 1) == L"autocheck autochk *");
    CHECK(list.image(0) == iconOk);
    registry.setBytes(machine, sessionManager, L"BootExecute", REG_MULTI_SZ, bytes(more));
    page.RefreshList();
    CHECK(list.image(0) == iconI);
    erase({IDOK, IDOK});
    DWORD type = 0;
    CHECK(registry.bytes(machine, sessionManager, L"BootExecute", &type) == bytes(plain));
    CHECK(type == REG_MULTI_SZ);
}

TEST_CASE_FIXTURE(Other, "userinit and the protected folder follow the family") {
    desktop.windowsVersion = ScriptedDesktop::windows98;
    registry.setString(machine, winlogon, L"userinit", win32::lowered(windows) + L"\\system\\userinit.exe,");
    init();
    CHECK(list.image(0) == iconOk);
}

TEST_CASE_FIXTURE(Other, "win.ini lines: the first with a value, in any section") {
    TempFolder::write(
        winIni,
        "[windows]\r\nload=\r\n  LOAD = x\r\n Load=  first.exe  \r\nload=second.exe\r\n[x]\nRUN=r\xE4.exe\n");
    init();
    REQUIRE(list.count() == 2);
    CHECK(list.text(0, 0) == L"Win.ini \"load=\" line");
    CHECK(list.text(0, 1) == L"first.exe");
    CHECK(list.text(1, 0) == L"Win.ini \"run=\" line");
    CHECK(list.text(1, 1) == win32::fromAnsi("r\xE4.exe"));
    CHECK(list.image(0) == iconI);
    CHECK(erase({IDOK, IDOK}) == L"Startups are deleted successfully.");
    CHECK(TempFolder::read(winIni) ==
          "[windows]\r\nload=\r\n  LOAD = x\r\nload=\r\nload=\r\n[x]\r\nRUN=r\xE4.exe\r\n");
    CHECK(list.count() == 1);
    erase({IDOK, IDOK});
    CHECK(TempFolder::read(winIni).find("[x]\r\nrun=\r\n") != std::string::npos);
    CHECK(list.count() == 0);
}

TEST_CASE_FIXTURE(Other, "win.ini without a value for its keys is not listed") {
    TempFolder::write(winIni, "[windows]\r\nload=\r\nrun=   \r\nload\r\n");
    init();
    CHECK(list.count() == 0);
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(
    Other, "system.ini: the first changed shell decides, else the last line; an empty one is changed") {
    struct Case {
        const char* file;
        int icon;
        const wchar_t* value;
    };
    for (const Case& c : {Case{"[boot]\r\nshell=Explorer.exe\r\n", iconOk, L"Explorer.exe"},
                          {"shell=explorer.exe\nSHELL = x\n Shell= EXPLORER.EXE \n", iconOk, L"EXPLORER.EXE"},
                          {"shell=explorer.exe\r\nshell=evil\r\nshell=explorer.exe\r\n", iconI, L"evil"},
                          {"shell=\r\n", iconI, L""},
                          {"[boot]\r\nshells=x\r\n", none, L""}}) {
        TempFolder::write(systemIni, c.file);
        init();
        REQUIRE(list.count() == (c.icon == none ? 0 : 1));
        if (c.icon == none) continue;
        CHECK(list.text(0, 0) == L"System.ini \"shell=\" line");
        CHECK(list.text(0, 1) == c.value);
        CHECK(list.image(0) == c.icon);
    }
    TempFolder::write(systemIni, "[boot]\r\nshell=evil\r\n shell=explorer.exe\r\nx=1");
    init();
    erase({IDOK, IDOK});
    CHECK(TempFolder::read(systemIni) == "[boot]\r\nshell=Explorer.exe\r\nshell=Explorer.exe\r\nx=1\r\n");
}

TEST_CASE_FIXTURE(Other, "an ini file that cannot be replaced stays as it was, and the log says why") {
    const std::string before = "[windows]\nload=x\n";
    TempFolder::write(winIni, before);
    ::SetFileAttributesW(winIni.c_str(), FILE_ATTRIBUTE_READONLY);
    init();
    list.select(0);
    desktop.messageBoxAnswers = {IDOK};
    press(page, 103);
    ::SetFileAttributesW(winIni.c_str(), FILE_ATTRIBUTE_NORMAL);
    CHECK(TempFolder::read(winIni) == before);
    CHECK(desktop.messageBoxes.size() == 1);
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].level == 4);
    CHECK(log.lines[0].source == L"ucOther.cmdDelete_Click");
}

TEST_CASE_FIXTURE(Other, "an ini file of 10 MB is listed and rewritten") {
    std::string lines = "[windows]\r\nload=x\r\n";
    while (lines.size() < 10 * 1024 * 1024) lines += "some key=some value\r\n";
    TempFolder::write(winIni, lines);
    init();
    CHECK(list.count() == 1);
    erase({IDOK, IDOK});
    CHECK(TempFolder::read(winIni) == lines.replace(11, 6, "load="));
}

TEST_CASE_FIXTURE(Other, "RunOnceEx: listed for its subkeys alone, cleared with its values") {
    for (HKEY hive : {machine, user}) {
        log.lines.clear();
        registry.setString(hive, runOnceEx, L"Title", L"t");
        init();
        CHECK(list.count() == 0);
        registry.setString(hive, runOnceEx + L"\\001\\Depend", L"1", L"x");
        registry.setString(hive, runOnceEx + L"\\002", L"1", L"y");
        registry.setString(hive, runOnceEx, L"", L"default");
        page.RefreshList();
        REQUIRE(list.count() == 1);
        CHECK(list.text(0, 0) == (hive == machine ? L"RunOnceEx particular to the computer (for any user)"
                                                  : L"RunOnceEx for the user who is currently logged on"));
        CHECK(list.text(0, 1) == L"One or more startups");
        CHECK(list.image(0) == iconI);
        erase({IDOK, IDOK});
        CHECK(registry.hasKey(hive, runOnceEx));
        CHECK_FALSE(registry.hasKey(hive, runOnceEx + L"\\001"));
        CHECK_FALSE(registry.hasKey(hive, runOnceEx + L"\\002"));
        CHECK(registry.valueCount(hive, runOnceEx) == 0);
        CHECK(list.count() == 0);
    }
}

TEST_CASE_FIXTURE(Other,
                  "startup folders: listed for normal files, opened in explorer with the path as it stands") {
    const struct {
        HKEY hive;
        const wchar_t* name;
    } places[] = {{machine, L"Common Startup"}, {user, L"Startup"}};
    for (const auto& place : places) {
        log.lines.clear();
        desktop.messageBoxes.clear();
        desktop.programs.clear();
        const std::wstring startupFolder = folder.file(place.name);
        ::CreateDirectoryW(startupFolder.c_str(), nullptr);
        Variable base(L"QUILLONBASE", folder.path());
        const std::wstring configured = std::wstring(L"%QUILLONBASE%\\") + place.name;
        registry.setString(place.hive, userShellFolders, place.name, configured, REG_EXPAND_SZ);
        init();
        CHECK(list.count() == 0);
        TempFolder::write(startupFolder + L"\\desktop.ini", "x");
        ::SetFileAttributesW((startupFolder + L"\\desktop.ini").c_str(),
                             FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
        ::CreateDirectoryW((startupFolder + L"\\folder").c_str(), nullptr);
        page.RefreshList();
        CHECK(list.count() == 0);
        TempFolder::write(startupFolder + L"\\a.lnk", "x");
        ::SetFileAttributesW((startupFolder + L"\\a.lnk").c_str(), FILE_ATTRIBUTE_READONLY);
        page.RefreshList();
        REQUIRE(list.count() == 1);
        CHECK(list.text(0, 0) == L"Common startup folder particular to the computer (for any user)");
        CHECK(list.text(0, 1) == L"One or more startups");
        CHECK(list.image(0) == iconIe);
        erase({IDCANCEL});
        CHECK(desktop.programs.empty());
        desktop.programAnswers = {true};
        CHECK(erase({IDOK}) ==
              L"Windows Explorer window will be opened now. In order to delete unwanted startups just remove "
              L"files "
              L"from startup folder. Don't forget to backup these files manually. Press OK to continue.");
        CHECK(desktop.messageBoxes.back().style == 49);
        CHECK(desktop.programs.at(0).commandLine == L"explorer " + configured);
        CHECK(log.lines.empty());
        ::SetFileAttributesW((startupFolder + L"\\a.lnk").c_str(), FILE_ATTRIBUTE_NORMAL);
        ::DeleteFileW((startupFolder + L"\\a.lnk").c_str());
        ::SetFileAttributesW((startupFolder + L"\\desktop.ini").c_str(), FILE_ATTRIBUTE_NORMAL);
        ::DeleteFileW((startupFolder + L"\\desktop.ini").c_str());
    }
}

TEST_CASE_FIXTURE(Other, "\"Shell Folders\" comes before \"User Shell Folders\"") {
    const std::wstring filled = folder.file(L"filled"), empty = folder.file(L"empty");
    for (const auto& path : {filled, empty}) ::CreateDirectoryW(path.c_str(), nullptr);
    TempFolder::write(filled + L"\\a.lnk", "x");
    registry.setString(user, shellFolders, L"Startup", empty);
    registry.setString(user, userShellFolders, L"Startup", filled);
    init();
    CHECK(list.count() == 0);
    registry.setString(user, shellFolders, L"Startup", filled);
    page.RefreshList();
    CHECK(list.count() == 1);
}

TEST_CASE_FIXTURE(Other, "Alt+Enter does nothing on a page without properties") {
    registry.setString(user, windowsKey, L"run", L"a");
    init();
    BYTE keys[256];
    ::GetKeyboardState(keys);
    keys[VK_MENU] = 0x80;
    ::SetKeyboardState(keys);
    ::SendMessageW(list.window(), WM_SYSKEYUP, VK_RETURN, 0);
    keys[VK_MENU] = 0;
    ::SetKeyboardState(keys);
    CHECK(log.lines.empty());
    CHECK(desktop.shellRequests.empty());
}

TEST_CASE_FIXTURE(Other, "after a refresh the same place is selected again, or the first row") {
    registry.setString(user, windowsKey, L"run", L"a");
    registry.setString(machine, windowsKey, L"run", L"b");
    registry.setString(machine, commandProcessor, L"AutoRun", L"c");
    init();
    CHECK(list.selected() == 0);
    list.select(2);
    registry.setString(user, windowsKey, L"run", L"");
    page.RefreshList();
    REQUIRE(list.count() == 2);
    CHECK(list.selected() == 1);
    registry.setString(machine, commandProcessor, L"AutoRun", L"");
    page.RefreshList();
    CHECK(list.selected() == 0);
}

TEST_CASE_FIXTURE(Other, "a value that Windows refuses to write is logged and nothing is claimed") {
    registry.setString(machine, winlogon, L"UIHost", L"evil");
    desktop.windowsVersion = ScriptedDesktop::windows2000;
    init();
    list.select(0);
    helmkit::RegistryAccess().DeleteValue(helmkit::HKLM, winlogon, L"UIHost");
    desktop.messageBoxAnswers = {IDOK};
    press(page, 103);
    CHECK(desktop.messageBoxes.size() == 1);
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].level == 4);
    CHECK(log.lines[0].code != 0);
    CHECK(list.count() == 1);
}

namespace {

// HKEY_CLASSES_ROOT in a key of the fixture, for the programs in which Wine leads it past the fixture.
class ClassesElsewhere : public helmkit::server::RegistryAccess {
  public:
    STDMETHODIMP ReadValue(LONG hive, BSTR key, BSTR name, BSTR* data, LONG* status) override {
        if (hive != helmkit::HKCR) return E_UNEXPECTED;
        const win32::BString elsewhere(L"Classes elsewhere\\" + win32::BString::copy(key));
        return RegistryAccess::ReadValue(helmkit::HKCU, elsewhere.get(), name, data, status);
    }
};

const win32::ComClass elsewhereTable[] = {
    {&CLSID_RegistryAccess, L"", win32::createObject<ClassesElsewhere>}};
const win32::ComModule elsewhereModule = {elsewhereTable, 1, &LIBID_Helmkit, 2, 1};

}  // namespace

TEST_CASE_FIXTURE(PageFixture, "a class's server is the library that is expected, in the system folder") {
    classes.revoke();
    for (const CLSID* own : {&CLSID_LogWriter, &CLSID_FileServices, &CLSID_SystemServices})
        classes.offer(*own);
    classes.offer(CLSID_RegistryAccess, elsewhereModule);
    helmkit::RegistryAccess access;
    auto place = [&](const std::wstring& classId, const std::wstring& server) {
        registry.setString(HKEY_CURRENT_USER, L"Classes elsewhere\\CLSID\\" + classId + L"\\InProcServer32",
                           L"", server, REG_EXPAND_SZ);
    };
    const std::wstring real = win32::windowsFolder();
    const Variable named(L"QuillonTestFolder", real);
    place(L"{1}", real + L"\\System32\\MSHTML.dll");
    place(L"{2}", L"%QuillonTestFolder%\\system32\\mshtml.dll");
    place(L"{3}", real + L"\\mshtml.dll");
    const struct {
        const wchar_t *classId, *library;
        startup::Icon icon;
        std::wstring server;
    } rows[] = {{L"{1}", L"mshtml.DLL", startup::Icon::protectedEntry, real + L"\\system32\\mshtml.dll"},
                {L"{1}", L"shdocvw.dll", startup::Icon::exclamation, real + L"\\system32\\mshtml.dll"},
                {L"{2}", L"mshtml.dll", startup::Icon::protectedEntry, real + L"\\system32\\mshtml.dll"},
                {L"{3}", L"mshtml.dll", startup::Icon::exclamation, real + L"\\mshtml.dll"},
                {L"{4}", L"mshtml.dll", startup::Icon::exclamation, L""}};
    for (const auto& row : rows) {
        std::wstring server = L"what was there";
        CHECK(startup::classServerCheck(access, row.classId, row.library, server) == row.icon);
        CHECK(server == win32::lowered(row.server));
    }
}

TEST_CASE_FIXTURE(PageFixture, "the browser checks") {
    helmkit::RegistryAccess access;
    const std::wstring real = win32::windowsFolder();
    std::wstring server;
    // In a redirected program Wine takes the 64-bit view of HKEY_CLASSES_ROOT past RegOverridePredefKey, and
    // so past the fixture; the 64-bit tests cover the class servers.
    if (!win32::isRedirected()) {
        registry.setString(HKEY_CLASSES_ROOT, L"CLSID\\{1}\\InProcServer32", L"",
                           real + L"\\System32\\MSHTML.dll");
        CHECK(startup::classServerCheck(access, L"{1}", L"mshtml.DLL", server) ==
              startup::Icon::protectedEntry);
        CHECK(server == win32::lowered(real) + L"\\system32\\mshtml.dll");
        CHECK(startup::classServerCheck(access, L"{1}", L"shdocvw.dll", server) ==
              startup::Icon::exclamation);
        CHECK(startup::classServerCheck(access, L"{2}", L"mshtml.dll", server) == startup::Icon::exclamation);
        const Variable named(L"QuillonTestFolder", real);
        registry.setString(HKEY_CLASSES_ROOT, L"CLSID\\{3}\\InProcServer32", L"",
                           L"%QuillonTestFolder%\\system32\\mshtml.dll", REG_EXPAND_SZ);
        CHECK(startup::classServerCheck(access, L"{3}", L"mshtml.dll", server) ==
              startup::Icon::protectedEntry);
    }
    CHECK(startup::blankPageCheck(real + L"\\SYSTEM32\\blank.htm") == startup::Icon::protectedEntry);
    CHECK(startup::blankPageCheck(real + L"\\blank.htm") == startup::Icon::exclamation);
    desktop.windowsVersion = ScriptedDesktop::windows98;
    CHECK(startup::blankPageCheck(real + L"\\system\\blank.htm") == startup::Icon::protectedEntry);
    for (const wchar_t* good : {L"About:Blank", L"HTTP://www.msn.com/", L"http://mardelix.example/",
                                L"http://mardelix.example/quillon", L"res://mshtml.dll/about.htm"}) {
        CHECK(startup::startPageCheck(good) == startup::Icon::protectedEntry);
    }
    const std::wstring portal = L"http://Portal.example/";
    for (const wchar_t* good : {L"http://portal.example/", L"HTTP://PORTAL.EXAMPLE/"}) {
        CHECK(startup::startPageCheck(good, portal) == startup::Icon::protectedEntry);
        CHECK(startup::startPageCheck(good) == startup::Icon::exclamation);
    }
    for (const wchar_t* bad :
         {L"", L"http://www.msn.com", L"http://www.msn.com/x", L"HTTP://mardelix.example/",
          L"RES://mshtml.dll", L"http://mardelix.example", L"about:blank "}) {
        CHECK(startup::startPageCheck(bad) == startup::Icon::exclamation);
    }
}
