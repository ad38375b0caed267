// What needs no window: listing, judging and deleting entries, the backup, the lines of the log.
#include <doctest/doctest.h>

#include "app/FMain.h"
#include "app/backup.h"
#include "app/main_menu.h"
#include "app/start_up.h"
#include "app/tab_state.h"
#include "startup/ucOther.h"
#include "startup/ucRun.h"
#include "startup/ucServices.h"
#include "startup/ucWinlogon.h"
#include "tests/support/memory_shortage.h"
#include "tests/support/page_fixture.h"
#include "tests/support/small_category.h"
#include "tests/support/started_window.h"
#include "win32/system/system.h"

namespace {

const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const std::wstring notify = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify";
const std::wstring winlogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
const std::wstring services = L"SYSTEM\\CurrentControlSet\\Services";

struct Windowless {
    TempFolder folder;
    RegistryFixture registry;
    HelmkitClasses classes;
    ScriptedDesktop desktop;
    RecordingLogger log;
    helmkit::Logger logger = log.logger();

    std::wstring names(const startup::Category& category) {
        std::wstring names;
        for (const auto& item : category.EnumItems(logger).items()) names += item.name() + L"; ";
        return names;
    }
};

}  // namespace

TEST_CASE_FIXTURE(Windowless, "all four categories are listed and emptied with a logger and nothing else") {
    registry.setString(HKEY_LOCAL_MACHINE, run, L"a", L"C:\\nowhere\\a.exe");
    registry.setString(HKEY_LOCAL_MACHINE, notify + L"\\p", L"DLLName", L"nowhere.dll");
    registry.setString(HKEY_LOCAL_MACHINE, winlogon, L"shell", L"evil.exe");
    registry.setString(HKEY_LOCAL_MACHINE, services + L"\\s", L"ImagePath", L"C:\\nowhere\\s.sys");
    const startup::ucRun general;
    const startup::ucWinlogon packages;
    const startup::ucOther places;
    const startup::ucServices drivers;
    CHECK(names(general) == L"a; ");
    CHECK(names(packages) == L"nowhere.dll; ");
    CHECK(names(places) == L"OS shell particular to the computer (for any user); ");
    CHECK(names(drivers) == L"C:\\nowhere\\s.sys; ");
    for (const startup::Category* category :
         {static_cast<const startup::Category*>(&general), static_cast<const startup::Category*>(&packages),
          static_cast<const startup::Category*>(&places)}) {
        const startup::StartupItem item = category->EnumItems(logger).items().at(0);
        CHECK_FALSE(startup::Category::isProtected(item));
        CHECK(category->deleteItem(item, item.name(), logger).succeeded);
    }
    CHECK_FALSE(drivers.deleteItem(drivers.EnumItems(logger).items().at(0), L"s", logger).succeeded);
    CHECK(names(general) == L"");
    CHECK(names(packages) == L"");
    const auto shell = places.EnumItems(logger).items();
    REQUIRE(shell.size() == 1);
    CHECK(shell[0].manufacturer() == L"Explorer.exe");
    CHECK(startup::Category::isProtected(shell[0]));
    CHECK(names(drivers) == L"C:\\nowhere\\s.sys; ");
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Windowless,
                  "a startup folder is asked for by its own text and nothing else is said of it") {
    const startup::ucOther places;
    registry.setString(HKEY_CURRENT_USER,
                       L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders", L"Startup",
                       folder.path());
    TempFolder::write(folder.file(L"a.lnk"), "x");
    const auto items = places.EnumItems(logger).items();
    REQUIRE(items.size() == 1);
    const startup::DeletionMessages messages = places.messagesFor(items[0]);
    CHECK(messages.confirmation == STRING_OPEN_STARTUP_FOLDER);
    for (int none : {messages.refusal, messages.success, messages.failure}) CHECK(none == 0);
}

TEST_CASE_FIXTURE(Windowless, "a row shows what the list does") {
    registry.setString(HKEY_LOCAL_MACHINE, run, L"a", L"C:\\nowhere\\a.exe");
    const startup::ucRun general;
    const auto row = startup::listedRow(general.design(), general.EnumItems(logger).items().at(0));
    CHECK(row.text == L"a");
    CHECK(row.second == L"Not specified");
    CHECK(row.file == L"C:\\nowhere\\a.exe");
}

TEST_CASE_FIXTURE(Windowless, "rows are logged by their template, at level 5 and without a source") {
    app::logRows(logger, L"Other: '%1', '%2'", {{L"a", L"b", L"c"}, {L"%2", L"d", L"e"}});
    app::logRows(logger, L"Run: '%1', '%2', '%3'", {{L"a", L"b", L"c"}});
    REQUIRE(log.lines.size() == 3);
    CHECK(log.lines[0].text == L"Other: 'a', 'b'");
    CHECK(log.lines[1].text == L"Other: '%2', 'd'");
    CHECK(log.lines[2].text == L"Run: 'a', 'b', 'c'");
    for (const LogLine& line : log.lines) {
        CHECK(line.level == 5);
        CHECK(line.source == L"");
        CHECK(line.code == 0);
    }
}

TEST_CASE_FIXTURE(Windowless, "a backup keeps its text once, beside what is being written") {
    const size_t length = 4 << 20;
    registry.setString(HKEY_LOCAL_MACHINE, run, L"a", std::wstring(length, L'x'));
    MemoryPeak peak;
    app::writeBackup(logger, folder.path());
    const size_t peakBytes = peak.bytes();
    const std::string file = TempFolder::read(folder.file(L"Backup\\Backup Nov 20, 2026 23-35-47.reg"));
    CHECK(file.size() > 2 * length);
    CHECK(file.compare(file.size() - 12, 12, std::string("x\0x\0x\0\"\0\r\0\n\0", 12)) == 0);
    // The value, in the ANSI flavour twice, and its line.
    CHECK(peakBytes < file.size() * 3);
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Windowless, "a backup needs a logger and a folder") {
    registry.setString(HKEY_LOCAL_MACHINE, run, L"a", L"b");
    app::writeBackup(logger, folder.path());
    const std::string file = TempFolder::read(folder.file(L"Backup\\Backup Nov 20, 2026 23-35-47.reg"));
    CHECK(file.substr(0, 6) == std::string("\xFF\xFEW\0i\0", 6));
    CHECK(log.lines.empty());
    app::writeBackup(logger, folder.file(L"missing\\folder"));
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].source == L"FMain.BackupRegistry");
    CHECK(log.lines[0].level == 4);
}

TEST_CASE_FIXTURE(Windowless,
                  "starting up opens the logs in the folder it is given; the plug-in is missing here") {
    desktop.messageBoxAnswers = {IDOK};
    helmkit::Logger made;
    bool hasTitle = false;
    CHECK_FALSE(app::initialize(made, folder.path(), [&](const std::wstring&) { hasTitle = true; }));
    CHECK_FALSE(hasTitle);
    CHECK(TempFolder::read(folder.file(L"QLN.log")).find("********** start app") != std::string::npos);
    CHECK(TempFolder::read(folder.file(L"short.log")).find("QLNCustom.dll") != std::string::npos);
    made = helmkit::Logger();
}

TEST_CASE_FIXTURE(PageFixture, "a fifth category is a file pair and one row of the table") {
    registry.setString(HKEY_LOCAL_MACHINE, ucSmall::key, L"tiny", L"C:\\nowhere\\tiny.exe");
    std::vector<app::PageRow> table(app::pageTable().begin(), app::pageTable().end());
    table.push_back({L"Small", L"Small Programs", L"Small: '%1', '%2', '%3'", app::makePage<ucSmall>});
    app::FMain window(table);
    startWindow(window, desktop);
    HWND strip = ::GetDlgItem(window.handle(), 200);
    CHECK(::SendMessageW(strip, TCM_GETITEMCOUNT, 0, 0) == 6);
    HWND page = ::FindWindowExW(window.handle(), nullptr, nullptr, L"ucSmall1");
    REQUIRE(page);
    HWND list = ::GetDlgItem(page, 101);
    CHECK(::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0) == 1);
    const std::string written = TempFolder::read(win32::moduleFolder(nullptr) + L"\\QLN.log");
    CHECK(written.find("Small: 'tiny', 'Not specified', 'C:\\nowhere\\tiny.exe'") != std::string::npos);
    // Its tab shows it, and its button deletes.
    ::SendMessageW(strip, TCM_SETCURSEL, 5, 0);
    NMHDR change = {strip, 200, static_cast<UINT>(TCN_SELCHANGE)};
    ::SendMessageW(window.handle(), WM_NOTIFY, 200, reinterpret_cast<LPARAM>(&change));
    CHECK((::GetWindowLongW(page, GWL_STYLE) & WS_VISIBLE) != 0);
    desktop.messageBoxAnswers = {IDOK, IDOK};
    ::SendMessageW(page, WM_COMMAND, MAKEWPARAM(103, BN_CLICKED), 0);
    CHECK_FALSE(registry.hasValue(HKEY_LOCAL_MACHINE, ucSmall::key, L"tiny"));
    CHECK(::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0) == 0);
    // A refresh from the menu reaches it as well.
    registry.setString(HKEY_LOCAL_MACHINE, ucSmall::key, L"tiny", L"x");
    ::SendMessageW(window.handle(), WM_COMMAND, app::mnuRefresh, 0);
    CHECK(::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0) == 1);
}
