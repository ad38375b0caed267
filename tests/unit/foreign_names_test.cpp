// Names that the code page lacks. On the ANSI side Windows shows another character in the place of each such
// one, a question mark or a letter that looks like it: what is listed under "a" may be another value than
// "a".
#include <doctest/doctest.h>

#include "helmkit/client/file_services.h"
#include "helmkit/client/logger.h"
#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"
#include "startup/ucOther.h"
#include "startup/ucRun.h"
#include "startup/ucWinlogon.h"
#include "tests/support/page_fixture.h"
#include "win32/base/flavour.h"
#include "win32/base/utf16_bytes.h"
#include "win32/files/file_search.h"
#include "win32/files/files.h"

namespace {

const HKEY machine = HKEY_LOCAL_MACHINE;
const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const std::wstring notify = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify";
const std::wstring winlogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
const std::wstring runOnceEx = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx";
const std::wstring denied = L"Access denied. ";

bool isAnsi() {
    return win32::flavour() == win32::Flavour::ansi;
}

template <class Control>
struct Page : PageFixture {
    Control page{parent.handle()};
    win32::ListView& list = page.ListViewObject();
    // A name that code page 1252 lacks, and the real name that it is shown as.
    std::wstring foreign, shown;

    void chooseNames() {
        SUBCASE("a question mark") {
            foreign = L"tool \x0416";
            shown = L"tool ?";
        }
        SUBCASE("a letter alike") {
            foreign = L"t\x014Dol";
            shown = L"tool";
        }
    }
    std::wstring listed() const { return isAnsi() ? shown : foreign; }
    void init() {
        helmkit::Logger logger = log.logger();
        page.Init(logger);
    }
    // Presses Delete on a row and answers with OK; true when it said that it was done.
    bool erase(int row) {
        list.select(row);
        desktop.messageBoxAnswers = {IDOK, IDOK};
        press(page, 103);
        return desktop.messageBoxes.back().text.find(denied) != 0;
    }
    int rowOf(const std::wstring& name) {
        for (int row = 0; row < list.count(); ++row) {
            if (page.itemOf(row).record().Name() == name) return row;
        }
        return win32::ListView::none;
    }
};

using General = Page<PageOf<startup::ucRun>>;
using Winlogon = Page<PageOf<startup::ucWinlogon>>;
using Other = Page<PageOf<startup::ucOther>>;

}  // namespace

TEST_CASE_FIXTURE(General, "a foreign value is shown with a replacement; alone, no other is meant") {
    chooseNames();
    if (foreign.empty()) return;
    registry.setString(machine, run, foreign, L"C:\\nowhere\\foreign.exe");
    init();
    REQUIRE(list.count() == 1);
    CHECK(list.text(0, 0) == listed());
    CHECK(erase(0) == !isAnsi());
    CHECK(registry.hasValue(machine, run, foreign) == isAnsi());
}

TEST_CASE_FIXTURE(General, "a foreign value never has the value deleted that bears its replacement's name") {
    chooseNames();
    if (foreign.empty()) return;
    registry.setString(machine, run, foreign, L"C:\\nowhere\\foreign.exe");
    registry.setString(machine, run, shown, L"C:\\nowhere\\real.exe");
    init();
    REQUIRE(list.count() == 2);
    if (isAnsi()) {
        // Nobody can tell which row is which value.
        for (int row : {0, 1}) CHECK_FALSE(erase(row));
        CHECK(registry.valueCount(machine, run) == 2);
    } else {
        CHECK(erase(rowOf(foreign)));
        CHECK_FALSE(registry.hasValue(machine, run, foreign));
        CHECK(registry.hasValue(machine, run, shown));
    }
}

TEST_CASE_FIXTURE(Winlogon, "a foreign package never has the key deleted that bears its replacement's name") {
    chooseNames();
    if (foreign.empty()) return;
    registry.makeKey(machine, notify + L"\\" + foreign + L"\\below");
    init();
    REQUIRE(list.count() == 1);
    CHECK(page.itemOf(0).record().Name() == listed());
    if (isAnsi()) CHECK_FALSE(erase(0));
    CHECK(registry.hasKey(machine, notify + L"\\" + foreign + L"\\below"));
    registry.setString(machine, notify + L"\\" + shown, L"DLLName", L"C:\\nowhere\\real.dll");
    page.RefreshList();
    REQUIRE(list.count() == 2);
    if (isAnsi()) {
        for (int row : {0, 1}) CHECK_FALSE(erase(row));
    } else {
        CHECK(erase(rowOf(foreign)));
    }
    CHECK(registry.hasKey(machine, notify + L"\\" + foreign) == isAnsi());
    CHECK(registry.hasKey(machine, notify + L"\\" + shown));
}

TEST_CASE_FIXTURE(Winlogon, "a package under a question mark does not borrow another one's library") {
    registry.makeKey(machine, notify + L"\\tool \x0416");
    registry.setString(machine, notify + L"\\tool ?", L"DLLName", L"C:\\nowhere\\real.dll");
    init();
    REQUIRE(list.count() == 2);
    int owners = 0;
    for (int row : {0, 1}) owners += list.text(row, 0) == L"C:\\nowhere\\real.dll";
    CHECK(owners == (isAnsi() ? 0 : 1));
}

TEST_CASE_FIXTURE(Winlogon,
                  "below a package, too, a foreign key stops the deletion before another goes for it") {
    chooseNames();
    if (foreign.empty() || !isAnsi()) return;
    const std::wstring package = notify + L"\\p\\";
    registry.makeKey(machine, package + foreign);
    registry.setString(machine, package + shown, L"v", L"x");
    init();
    CHECK_FALSE(erase(0));
    CHECK(registry.hasKey(machine, package + foreign));
    CHECK(registry.hasKey(machine, package + shown));
}

TEST_CASE_FIXTURE(Other, "emptying RunOnceEx stops at a foreign name and tells no success") {
    chooseNames();
    if (foreign.empty()) return;
    registry.makeKey(machine, runOnceEx + L"\\" + foreign);
    registry.makeKey(machine, runOnceEx + L"\\" + shown);
    init();
    REQUIRE(list.count() == 1);
    list.select(0);
    desktop.messageBoxAnswers = {IDOK};
    if (!isAnsi()) desktop.messageBoxAnswers.push_back(IDOK);
    press(page, 103);
    CHECK(registry.hasKey(machine, runOnceEx + L"\\" + foreign) == isAnsi());
    CHECK(registry.hasKey(machine, runOnceEx + L"\\" + shown) == isAnsi());
    // What the way back could not be written of, and then the refusal.
    REQUIRE(log.lines.size() == (isAnsi() && shown == L"tool ?" ? 3 : 1));
    CHECK(log.lines.back().code == (isAnsi() ? static_cast<LONG>(0x8007007B) : 0));  // ERROR_INVALID_NAME
    log.lines.pop_back();
    for (const LogLine& line : log.lines) {
        CHECK(line.text.find(L"not exported: [HKEY_LOCAL_MACHINE\\") == 0);
        CHECK(line.code == 0);
        CHECK(line.level == 4);
    }
}

TEST_CASE_FIXTURE(Other, "a place is restored under its own name, beside a foreign one that looks like it") {
    registry.setString(machine, winlogon, L"sh\x0115ll", L"foreign.exe");
    registry.setString(machine, winlogon, L"shell", L"evil.exe");
    init();
    REQUIRE(list.count() == 1);
    CHECK(list.text(0, 1) == L"evil.exe");
    CHECK(erase(0));
    const std::wstring before(L"foreign.exe\0", 12), after(L"Explorer.exe\0", 13);
    CHECK(registry.bytes(machine, winlogon, L"sh\x0115ll") == win32::bytesOf(before));
    CHECK(registry.bytes(machine, winlogon, L"shell") == win32::bytesOf(after));
}

TEST_CASE_FIXTURE(PageFixture, "a foreign path never means the file that its replacement names") {
    const std::wstring foreign = folder.file(L"t\x014Dol.exe"), shown = folder.file(L"tool.exe");
    program(shown, {{L"FileDescription", L"Real"}});
    const std::string real = TempFolder::read(shown);
    TempFolder::write(foreign, "foreign");
    auto&& files = helmkit::fileServices();
    if (!isAnsi()) {
        CHECK(files.FileExists(foreign));
        files.WriteTextFile(foreign, L"new");
        CHECK(TempFolder::read(foreign) == "new");
    } else {
        CHECK_FALSE(files.FileExists(foreign));
        CHECK_THROWS_AS(files.ReadTextFile(foreign), win32::Error);
        CHECK_THROWS_AS(files.WriteTextFile(foreign, L"new"), win32::Error);
        CHECK_THROWS_AS(win32::removeFile(foreign), win32::Error);
        CHECK_THROWS_AS(files.CreateFolder(folder.file(L"f\x014D")), win32::Error);
        CHECK_FALSE(win32::findFile(foreign));
        CHECK_FALSE(win32::findFile(folder.file(L"too\x0416.exe")));
        CHECK(win32::longPath(foreign).empty());
        CHECK_FALSE(helmkit::systemServices().GetFileVersionInfo(foreign).Exists(L"FileDescription"));
        CHECK(TempFolder::read(foreign) == "foreign");
        CHECK(::GetFileAttributesW(folder.file(L"fo").c_str()) == INVALID_FILE_ATTRIBUTES);
    }
    CHECK(TempFolder::read(shown) == real);
}

TEST_CASE_FIXTURE(PageFixture, "the shell and new programs get no path that the code page lacks") {
    if (!isAnsi()) return;
    program(folder.file(L"tool.exe"));
    win32::setDesktop(nullptr);
    win32::ShellRequest request;
    request.verb = L"open";
    request.file = folder.file(L"t\x014Dol.exe");
    CHECK_FALSE(win32::desktop().shellExecute(request));
    CHECK_FALSE(win32::desktop().startProgram({}, L"\"" + request.file + L"\""));
    CHECK_FALSE(win32::desktop().startProgram(request.file, L"tool"));
    win32::setDesktop(&desktop);
}

TEST_CASE_FIXTURE(HiddenWindow, "an edit control is given no text that one of Windows 98 would not take") {
    HWND box = win32::createControl(handle(), L"Edit", {}, ES_AUTOHSCROLL, 0, 1);
    win32::setText(box, std::wstring(100000, L'x'));
    CHECK(win32::windowText(box).size() == (isAnsi() ? 30000 : 100000));
    win32::setText(box, std::wstring(30000, L'y'));
    CHECK(win32::windowText(box) == std::wstring(30000, L'y'));
}
