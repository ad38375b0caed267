// The window: order of its work, what a page hands on, menu, keys, tools.
#include <doctest/doctest.h>

#include <new>

#include "app/FMain.h"
#include "app/backup.h"
#include "app/main_menu.h"
#include "app/start_up.h"
#include "app/tools_menu.h"
#include "resources/resource_ids.h"
#include "tests/support/failing_classes.h"
#include "tests/support/memory_shortage.h"
#include "tests/support/page_fixture.h"
#include "tests/support/replaced_import.h"
#include "tests/support/small_category.h"
#include "win32/files/file_search.h"
#include "win32/system/resources.h"
#include "win32/windows/menu.h"

namespace {

// The calls that reach the registry service, in their order.
std::vector<std::wstring>& asked() {
    static std::vector<std::wstring> calls;
    return calls;
}

class RecordingRegistryAccess : public helmkit::server::RegistryAccess {
  public:
    STDMETHODIMP ExportKey(LONG* hive, BSTR* key, BSTR* text) override {
        asked().push_back((*hive == helmkit::HKLM ? L"HKLM " : L"HKCU ") + win32::BString::copy(*key));
        return RegistryAccess::ExportKey(hive, key, text);
    }
    STDMETHODIMP ExportValue(LONG hive, BSTR key, BSTR name, BSTR* text) override {
        asked().push_back((hive == helmkit::HKLM ? L"HKLM " : L"HKCU ") + win32::BString::copy(key) + L" : " +
                          win32::BString::copy(name));
        return RegistryAccess::ExportValue(hive, key, name, text);
    }
};

const win32::ComClass recordingTable[] = {
    {&CLSID_RegistryAccess, L"", win32::createObject<RecordingRegistryAccess>}};
const win32::ComModule recordingModule = {recordingTable, 1, &LIBID_Helmkit, 2, 1};

struct Window : PageFixture {
    std::wstring logged() { return win32::fromAnsi(TempFolder::read(folder.file(L"QLN.log"))); }
};

std::vector<std::wstring> captions(HMENU menu) {
    std::vector<std::wstring> texts;
    for (int row = 0; row < ::GetMenuItemCount(menu); ++row) {
        wchar_t text[100] = L"";
        ::GetMenuStringW(menu, row, text, 100, MF_BYPOSITION);
        texts.push_back(::GetMenuState(menu, row, MF_BYPOSITION) & MF_SEPARATOR ? L"-" : text);
    }
    return texts;
}

using Captions = std::vector<std::wstring>;

}  // namespace

TEST_CASE_FIXTURE(Window, "the backup asks for its 24 keys and values in their order and letters") {
    classes.revoke();
    for (const CLSID* own : {&CLSID_LogWriter, &CLSID_FileServices, &CLSID_SystemServices})
        classes.offer(*own);
    classes.offer(CLSID_RegistryAccess, recordingModule);
    asked().clear();
    app::writeBackup(log.logger(), folder.path());
    const std::wstring cv = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\";
    const std::wstring nt = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\";
    const Captions expected = {L"HKLM " + cv + L"Run",
                               L"HKCU " + cv + L"Run",
                               L"HKLM " + cv + L"RunServices",
                               L"HKCU " + cv + L"RunServices",
                               L"HKLM " + cv + L"RunOnce",
                               L"HKCU " + cv + L"RunOnce",
                               L"HKLM " + cv + L"RunServicesOnce",
                               L"HKCU " + cv + L"RunServicesOnce",
                               L"HKLM " + cv + L"policies\\Explorer\\Run",
                               L"HKCU " + cv + L"policies\\Explorer\\Run",
                               L"HKLM Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify",
                               L"HKCU " + nt + L"Windows : run",
                               L"HKLM " + nt + L"Windows : run",
                               L"HKCU " + nt + L"Windows : load",
                               L"HKLM " + nt + L"Windows : load",
                               L"HKLM " + nt + L"Winlogon : shell",
                               L"HKLM " + nt + L"Winlogon : userinit",
                               L"HKLM SYSTEM\\CurrentControlSet\\Control\\Session Manager : BootExecute",
                               L"HKCU Control Panel\\Desktop : SCRNSAVE.EXE",
                               L"HKLM SOFTWARE\\Microsoft\\Command Processor : AutoRun",
                               L"HKLM " + nt + L"Winlogon : VmApplet",
                               L"HKLM " + nt + L"Winlogon : UIHost",
                               L"HKLM " + cv + L"RunOnceEx",
                               L"HKCU " + cv + L"RunOnceEx"};
    CHECK(asked() == expected);
}

TEST_CASE_FIXTURE(Window, "the start of Windows is told in whole seconds, across days") {
    desktop.ticks = 1999;
    desktop.messageBoxAnswers = {IDOK, IDOK};
    helmkit::Logger logger;
    app::initialize(logger, folder.path(), [](const std::wstring&) {});
    CHECK(logged().find(L"35:46") != std::wstring::npos);
    desktop.ticks = 2 * 24 * 3600 * 1000 + 999;
    app::initialize(logger, folder.path(), [](const std::wstring&) {});
    const std::wstring second = logged().substr(logged().rfind(L"Startup: "));
    CHECK(second.find(L"18") != std::wstring::npos);
    CHECK(second.find(L"35:47") != std::wstring::npos);
    logger = helmkit::Logger();
}

namespace {

// A page that notes what happens to it, and may replace the logger.
class NotedPage : public app::Page {
  public:
    static inline std::wstring notes;
    static inline IDispatch* replacement = nullptr;
    NotedPage(HWND parent, wchar_t name) : control_(parent), name_(name) {}
    win32::Window& window() override { return control_; }
    void Init(helmkit::Logger& logger) override {
        notes += std::wstring(L"I") + name_ + (logger.object() == replacement ? L"r " : L" ");
        if (name_ == L'a' && replacement) logger = helmkit::Logger(win32::ComPtr<IDispatch>(replacement));
    }
    void RefreshList() override {
        notes += std::wstring(L"R") + name_ + L" ";
        if (name_ == fails) win32::raise(E_FAIL, L"no refresh");
    }
    std::vector<startup::ListedRow> rows() const override { return {{L"t", L"s", L"f"}}; }
    static inline wchar_t fails = 0;

  private:
    struct Control : win32::TabPage {
        explicit Control(HWND parent) : TabPage(parent, L"noted") {}
    } control_;
    wchar_t name_;
};

template <wchar_t name>
std::unique_ptr<app::Page> noted(HWND parent) {
    return std::make_unique<NotedPage>(parent, name);
}

const app::PageRow notedPages[] = {{L"a", L"A", L"A %1", noted<L'a'>},
                                   {L"b", L"B", nullptr, noted<L'b'>},
                                   {L"c", L"C", L"C %1 %2 %3", noted<L'c'>}};

struct Noted : Window {
    Noted() {
        NotedPage::notes.clear();
        NotedPage::fails = 0;
        NotedPage::replacement = nullptr;
    }
};

}  // namespace

TEST_CASE_FIXTURE(Noted,
                  "pages are filled and refreshed in their order; a replaced logger reaches the next page") {
    NotedPage::replacement = &log;
    app::FMain window(notedPages);
    window.Form_Load();
    CHECK(NotedPage::notes == L"Ia Ibr Icr ");
    // The window's own lines go to the replacement, too.
    REQUIRE(log.lines.size() == 2);
    CHECK(log.lines[0].text == L"A t");
    CHECK(log.lines[1].text == L"C t s f");
    NotedPage::notes.clear();
    ::SendMessageW(window.handle(), WM_COMMAND, app::mnuRefresh, 0);
    CHECK(NotedPage::notes == L"Ra Rb Rc ");
    NotedPage::fails = L'b';
    log.lines.clear();
    NotedPage::notes.clear();
    ::SendMessageW(window.handle(), WM_COMMAND, app::mnuRefresh, 0);
    CHECK(NotedPage::notes == L"Ra Rb ");
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].source == L"FMain.mnuRefresh_Click");
    CHECK(log.lines[0].text == L"no refresh");
}

TEST_CASE_FIXTURE(Noted, "an error in the log of the listed entries ends it under its own name") {
    FailingClasses failing(classes);
    NotedPage::replacement = &log;
    app::FMain window(notedPages);
    refused() = {L"FormatMessage"};
    window.Form_Load();
    // The backup fails first, for its file's name.
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].source == L"FMain.LogTabState");
    CHECK(log.lines[0].level == 4);
}

TEST_CASE_FIXTURE(
    Window, "an error in filling the pages is logged as InitTabStrip's, and the log of entries follows") {
    struct FailingPage : NotedPage {
        explicit FailingPage(HWND parent) : NotedPage(parent, L'x') {}
        void Init(helmkit::Logger&) override { win32::raise(E_FAIL, L"no page"); }
    };
    const app::PageRow rows[] = {{L"a", L"A", L"A %1", noted<L'a'>},
                                 {L"x", L"X", nullptr, [](HWND parent) -> std::unique_ptr<app::Page> {
                                      return std::make_unique<FailingPage>(parent);
                                  }}};
    NotedPage::replacement = &log;
    app::FMain window(rows);
    window.Form_Load();
    REQUIRE(log.lines.size() == 2);
    CHECK(log.lines[0].source == L"FMain.InitTabStrip");
    CHECK(log.lines[0].text == L"no page");
    CHECK(log.lines[1].text == L"A t");
    NotedPage::replacement = nullptr;
}

TEST_CASE_FIXTURE(Noted, "an error of the form's own loading is logged as Form_Load's and ends it") {
    NotedPage::replacement = &log;
    app::FMain window(notedPages);
    window.Form_Load();
    log.lines.clear();
    NotedPage::notes.clear();
    {
        // Too little for the path of the program's folder, the first thing that is asked for.
        MemoryShortage shortage(200);
        window.Form_Load();
        CHECK(shortage.wasFelt());
    }
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].source == L"FMain.Form_Load");
    CHECK(log.lines[0].level == 4);
    CHECK(log.lines[0].code == E_OUTOFMEMORY);
    CHECK(NotedPage::notes.empty());
}

TEST_CASE_FIXTURE(Noted, "an error in changing the page is logged as ts_Click's") {
    const std::wstring longKey(200, L'k');
    const app::PageRow rows[] = {{longKey.c_str(), L"A", nullptr, noted<L'a'>}};
    NotedPage::replacement = &log;
    app::FMain window(rows);
    window.Form_Load();
    log.lines.clear();
    NMHDR changed = {::GetDlgItem(window.handle(), 200), 200, static_cast<UINT>(TCN_SELCHANGE)};
    {
        MemoryShortage shortage(300);
        ::SendMessageW(window.handle(), WM_NOTIFY, 200, reinterpret_cast<LPARAM>(&changed));
        CHECK(shortage.wasFelt());
    }
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].source == L"FMain.ts_Click");
    CHECK(log.lines[0].code == E_OUTOFMEMORY);
}

TEST_CASE_FIXTURE(Window, "an error in a menu command is logged under the command's name") {
    auto sourceOf = [&](auto command) {
        log.lines.clear();
        command();
        REQUIRE(log.lines.size() == 1);
        CHECK(log.lines[0].level == 4);
        return log.lines[0].source;
    };
    const helmkit::Logger& logger = log.logger();
    CHECK(sourceOf([&] {
              MemoryShortage shortage(300);
              app::mnuAbout_Click(parent.handle(), logger);
              CHECK(shortage.wasFelt());
          }) == L"FMain.mnuAbout_Click");
    CHECK(sourceOf([&] {
              struct : ScriptedDesktop {
                  bool startProgram(const std::wstring&, const std::wstring&) override {
                      throw std::bad_alloc();
                  }
              } withoutMemory;
              app::mnuVisitWebsite_Click(logger);
          }) == L"FMain.mnuVisitWebsite_Click");
    desktop.whileOpen = [](const std::wstring&) { win32::raise(E_FAIL, L"no box"); };
    CHECK(sourceOf([&] { app::mnuBackup_Click(parent.handle(), logger, folder.path()); }) ==
          L"FMain.mnuBackup_Click");
    CHECK(sourceOf([&] { app::mnuRestore_Click(parent.handle(), logger, folder.path()); }) ==
          L"FMain.mnuRestore_Click");
}

TEST_CASE("five pages in their order, each with its key, caption and line in the log") {
    const wchar_t* const expected[][3] = {
        {L"help", L"Help", nullptr},
        {L"Run", L"General Startup Programs", L"Run: '%1', '%2', '%3'"},
        {L"Winlogon", L"Winlogon Startup Programs", L"Winlogon: '%1', '%2', '%3'"},
        {L"Other", L"Custom Startup Programs", L"Other: '%1', '%2'"},
        {L"Services", L"Services", L"Services: '%1', '%2', '%3'"},
    };
    auto text = [](const wchar_t* given) { return given ? std::wstring(given) : L"(none)"; };
    REQUIRE(app::pageTable().size() == std::size(expected));
    for (size_t i = 0; i < std::size(expected); ++i) {
        const app::PageRow& row = app::pageTable()[i];
        CHECK(text(row.key) == expected[i][0]);
        CHECK(text(row.caption) == expected[i][1]);
        CHECK(text(row.logTemplate) == text(expected[i][2]));
    }
}

TEST_CASE("the main menu: captions, separators, no shortcuts") {
    HMENU menu = app::createMainMenu();
    CHECK(captions(menu) == Captions{L"&File", L"&Tools", L"&Help"});
    CHECK(captions(::GetSubMenu(menu, 0)) == Captions{L"&Refresh", L"-", L"&Exit"});
    CHECK(captions(::GetSubMenu(menu, 1)) ==
          Captions{L"&Backup Current Settings", L"&Restore...", L"-", L"&More Parasite Removers"});
    CHECK(captions(::GetSubMenu(::GetSubMenu(menu, 1), 3)) ==
          Captions{L"&Corvana", L"&Teselin", L"-", L"&Morrowfen"});
    CHECK(captions(::GetSubMenu(menu, 2)) == Captions{L"Quillon &Home Page", L"-", L"&About Quillon..."});
    ::DestroyMenu(menu);
}

namespace {

// A folder that is a link, as its attributes tell.
DWORD(WINAPI* realAttributesW)(const wchar_t*);
DWORD(WINAPI* realAttributesA)(const char*);

template <class Char, auto* real>
DWORD WINAPI attributesOfLink(const Char* path) {
    const DWORD attributes = (*real)(path);
    const bool isFolder = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
    return isFolder ? attributes | FILE_ATTRIBUTE_REPARSE_POINT : attributes;
}

}  // namespace

TEST_CASE_FIXTURE(Window, "a link in the place of the backup's folder gets no file") {
    const ReplacedImport wideCall("GetFileAttributesW", &attributesOfLink<wchar_t, &realAttributesW>,
                                  realAttributesW);
    const ReplacedImport ansiCall("GetFileAttributesA", &attributesOfLink<char, &realAttributesA>,
                                  realAttributesA);
    app::writeBackup(log.logger(), folder.path());
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].source == L"FMain.BackupRegistry");
    CHECK(log.lines[0].code == E_ACCESSDENIED);
    CHECK(::RemoveDirectoryW(folder.file(L"Backup").c_str()));  // nothing is in it
}

TEST_CASE_FIXTURE(
    Window, "Restore tells in style 64 and opens the folder also where there is no backup and no folder") {
    const std::wstring noFolder = folder.file(L"nothing here"), noBackup = folder.path();
    REQUIRE(::CreateDirectoryW((noBackup + L"\\Backup").c_str(), nullptr));
    for (const std::wstring& program : {noFolder, noBackup}) {
        desktop.messageBoxAnswers = {IDOK};
        ++desktop.expectedFolders;
        app::mnuRestore_Click(parent.handle(), log.logger(), program);
        CHECK(desktop.messageBoxes.back().style == 64);
        CHECK(desktop.messageBoxes.back().title == L"Quillon");
        CHECK(desktop.folders.back().path == program + L"\\Backup\\");
        CHECK(desktop.folders.back().owner == parent.handle());
    }
    CHECK_FALSE(win32::isFolder(noFolder));
    CHECK(log.lines.empty());
}

TEST_CASE("the texts that no window shows stay in the string table, the description too") {
    CHECK(win32::loadString(117) ==
          L"Quillon is freeware utility to remove malicious programs from Windows startup.\n \nQuillon "
          L"inspects "
          L"Windows startup places and lists startup programs so you could delete abusive items.\n \nQuillon "
          L"backs "
          L"up configuration data so you can roll back all changes at any time.");
    const std::wstring ending = L"Request Support button", text = win32::loadString(131);
    REQUIRE(text.size() > ending.size());
    CHECK(text.substr(text.size() - ending.size()) == ending);
    CHECK(win32::loadString(132) ==
          L"Your support request has been sent successfully. Please allow up to 48 hours for a response.");
    CHECK(win32::loadString(133) == L"Cannot send support request. Ensure you are online now. ");
    CHECK(win32::loadString(134) == L"Please describe the problem. ");
    CHECK(win32::loadString(135) == L"Your description here...");
    CHECK(win32::loadString(136) == L"Please type your name. ");
    CHECK(win32::loadString(137) == L"Please type your e-mail. ");
}
