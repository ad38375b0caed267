// What the windows answer to the messages of Windows and of their controls, told or not to do anything.
#include <doctest/doctest.h>

#include <functional>
#include <memory>

#include "app/FAbout.h"
#include "app/FMain.h"
#include "app/StaticLine.h"
#include "app/main_menu.h"
#include "startup/ucOther.h"
#include "startup/ucRun.h"
#include "support/ucHelp.h"
#include "tests/support/page_fixture.h"
#include "tests/support/replaced_import.h"
#include "tests/support/small_category.h"

namespace {

const UINT dpiChanged = 0x02E0;
using Place = std::vector<int>;

LRESULT sent(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return ::SendMessageW(window, message, wParam, lParam);
}

LRESULT notified(HWND window, UINT_PTR id, UINT code) {
    NMHDR notification = {nullptr, id, code};
    return sent(window, WM_NOTIFY, id, reinterpret_cast<LPARAM>(&notification));
}

struct Answers : PageFixture {
    PageOf<startup::ucRun> page{parent.handle()};
    win32::ListView& list = page.ListViewObject();

    void fill() {
        registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run", L"a",
                           program(folder.file(L"a.exe")));
        helmkit::Logger logger = log.logger();
        page.Init(logger);
    }
    // What the file box reads after the list has told a change of its row.
    std::wstring boxAfter(UINT changed, UINT before, UINT after) {
        win32::setText(control(page, 102), L"as it was");
        NMLISTVIEW change = {};
        change.hdr = {list.window(), 101, static_cast<UINT>(LVN_ITEMCHANGED)};
        change.uChanged = changed;
        change.uOldState = before;
        change.uNewState = after;
        CHECK(sent(page.handle(), WM_NOTIFY, 101, reinterpret_cast<LPARAM>(&change)) == 0);
        return fileBox(page);
    }
};

// A category whose reading tells of itself.
class Watched : public startup::Category {
  public:
    Watched() : Category(smallDesign) {}
    static inline std::function<void()> whenRead;

  protected:
    void enumerate(startup::Enumeration&) const override { whenRead(); }
};

}  // namespace

TEST_CASE_FIXTURE(Answers, "a page answers 0 to what it has done, and 1 where the list's rows are its own") {
    fill();
    CHECK(sent(page.handle(), WM_SIZE, SIZE_RESTORED, MAKELPARAM(300, 200)) == 0);
    CHECK(sent(page.handle(), WM_SETFOCUS) == 0);
    CHECK(sent(page.handle(), WM_COMMAND, MAKEWPARAM(99, BN_CLICKED)) == 0);
    const auto deleteAll = static_cast<UINT>(LVN_DELETEALLITEMS);
    CHECK(notified(page.handle(), 101, deleteAll) == TRUE);
    CHECK(notified(page.handle(), 102, deleteAll) == 0);
    CHECK(notified(page.handle(), 101, static_cast<UINT>(LVN_COLUMNCLICK)) == 0);
    // No menu: nothing would answer it.
    CHECK(notified(page.handle(), 99, static_cast<UINT>(NM_RCLICK)) == 0);
}

TEST_CASE_FIXTURE(Answers, "only a page that marks values takes part in the drawing of its list") {
    PageOf<startup::ucOther> custom(parent.handle());
    auto answerOf = [](startup::StartupListControl& asked) {
        NMLVCUSTOMDRAW draw = {};
        draw.nmcd.hdr = {asked.ListViewObject().window(), 101, static_cast<UINT>(NM_CUSTOMDRAW)};
        draw.nmcd.dwDrawStage = CDDS_PREPAINT;
        return sent(asked.handle(), WM_NOTIFY, 101, reinterpret_cast<LPARAM>(&draw));
    };
    CHECK(answerOf(page) == CDRF_DODEFAULT);
    CHECK(answerOf(custom) == CDRF_NOTIFYITEMDRAW);
}

TEST_CASE_FIXTURE(Answers, "the file box follows a selection that has changed, and nothing else") {
    fill();
    const std::wstring file = page.rows()[0].file;
    CHECK(boxAfter(LVIF_STATE, 0, LVIS_SELECTED) == file);
    CHECK(boxAfter(LVIF_STATE, LVIS_SELECTED | LVIS_FOCUSED, LVIS_FOCUSED) == file);
    CHECK(boxAfter(LVIF_STATE, LVIS_SELECTED, LVIS_SELECTED | LVIS_FOCUSED) == L"as it was");
    CHECK(boxAfter(LVIF_STATE, 0, LVIS_FOCUSED) == L"as it was");
    CHECK(boxAfter(LVIF_TEXT, 0, LVIS_SELECTED) == L"as it was");
}

TEST_CASE_FIXTURE(Answers, "a size at the same resolution keeps the pictures that the list has") {
    auto images = [&] { return sent(list.window(), LVM_GETIMAGELIST, LVSIL_SMALL); };
    const LRESULT before = images();
    REQUIRE(before != 0);
    sent(page.handle(), WM_SIZE, SIZE_RESTORED, MAKELPARAM(310, 210));
    CHECK(images() == before);
    const TwipResolution other(parent.handle());
    sent(page.handle(), WM_SIZE, SIZE_RESTORED, MAKELPARAM(310, 210));
    CHECK(images() != before);
}

TEST_CASE_FIXTURE(Answers, "while a list is read the mouse shows the hourglass") {
    const HCURSOR arrow = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
    const HCURSOR hourGlass = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32514));
    PageOf<Watched> watched(parent.handle());
    int reads = 0;
    Watched::whenRead = [&] {
        ++reads;
        CHECK(::GetCursor() == hourGlass);
    };
    ::SetCursor(arrow);
    helmkit::Logger logger = log.logger();
    watched.Init(logger);
    CHECK(reads == 1);
    CHECK(::GetCursor() == arrow);
    Watched::whenRead = nullptr;
}

TEST_CASE_FIXTURE(Answers,
                  "a page that is too small from its start leaves its controls nothing, and never less") {
    const TwipResolution twips(parent.handle());
    sent(page.handle(), WM_SIZE, SIZE_RESTORED, MAKELPARAM(10, 10));
    auto placeOf = [&](int id) { return placeIn(page.handle(), control(page, id)); };
    CHECK(placeOf(101) == Place{0, 285, 10, 0});
    CHECK(placeOf(102) == Place{1110, -785, 0, 315});
    CHECK(placeOf(103) == Place{10 - 1995 - 15, -425, 1995, 375});
    CHECK(placeOf(104) == Place{0, 0, 10, 255});
    CHECK(placeOf(105) == Place{0, -755, 1050, 255});
}

namespace {

RECT inside;
BOOL WINAPI toldInside(HWND, RECT* rect) {
    *rect = inside;
    return TRUE;
}
BOOL WINAPI isMinimized(HWND) {
    return TRUE;
}

struct MainAnswers : PageFixture {
    std::unique_ptr<app::FMain> window = std::make_unique<app::FMain>();
    HWND handle = window->handle(), strip = ::GetDlgItem(handle, 200), footer = ::GetDlgItem(handle, 201);
    HWND page = ::FindWindowExW(handle, nullptr, nullptr, L"ucRun1");

    void start() {
        desktop.messageBoxAnswers.push_back(IDOK);
        CHECK_FALSE(window->Form_Initialize());
        window->Form_Load();
    }
    Place placeOf(HWND control) const { return placeIn(handle, control); }
};

}  // namespace

TEST_CASE_FIXTURE(MainAnswers,
                  "the window answers 0 to what it has done and does nothing for other commands") {
    start();
    CHECK(sent(handle, WM_SIZE, SIZE_RESTORED, MAKELPARAM(600, 400)) == 0);
    CHECK(sent(handle, WM_SETFOCUS) == 0);
    for (UINT unknown : {1000u, 1007u, app::mnuTandem - 1u, app::mnuTandem + 4u, 0xFFFFu}) {
        CHECK(sent(handle, WM_COMMAND, unknown) == 0);
    }
    // A control's notification carries its window and is no command, whatever its number.
    CHECK(sent(handle, WM_COMMAND, app::mnuExit, reinterpret_cast<LPARAM>(footer)) == 0);
    CHECK(::IsWindow(handle));
    CHECK(notified(handle, 200, static_cast<UINT>(TCN_SELCHANGE)) == 0);
    const RECT place = {0, 0, 500, 400};
    CHECK(sent(handle, dpiChanged, MAKEWPARAM(96, 96), reinterpret_cast<LPARAM>(&place)) == 0);
    CHECK(desktop.messageBoxes.size() == 1);
}

TEST_CASE_FIXTURE(MainAnswers, "a tab's click alone changes the page") {
    start();
    auto isShown = [&] { return (::GetWindowLongW(page, GWL_STYLE) & WS_VISIBLE) != 0; };
    sent(strip, TCM_SETCURSEL, 1);
    notified(handle, 200, static_cast<UINT>(TCN_SELCHANGING));
    notified(handle, 201, static_cast<UINT>(TCN_SELCHANGE));
    CHECK_FALSE(isShown());
    notified(handle, 200, static_cast<UINT>(TCN_SELCHANGE));
    CHECK(isShown());
}

TEST_CASE_FIXTURE(MainAnswers,
                  "controls have no place before the start, and none changes in a minimized window") {
    sent(handle, WM_SIZE, SIZE_RESTORED, MAKELPARAM(600, 400));
    for (HWND control : {strip, page, footer}) CHECK(placeOf(control) == Place{0, 0, 0, 0});
    start();
    const Place before = placeOf(footer);
    CHECK(before[3] > 0);
    ::SetWindowPos(footer, nullptr, 1, 2, 3, 4, SWP_NOZORDER);
    {
        const ReplacedImport minimized("IsIconic", &isMinimized);
        sent(handle, WM_SIZE, SIZE_MINIMIZED);
        CHECK(placeOf(footer) == Place{1, 2, 3, 4});
    }
    sent(handle, WM_SIZE, SIZE_RESTORED);
    CHECK(placeOf(footer) == before);
}

TEST_CASE_FIXTURE(MainAnswers,
                  "a window that is too small from its start leaves its pages nothing, and never less") {
    const TwipResolution twips(handle);
    inside = {0, 0, 300, 310};
    const ReplacedImport call("GetClientRect", &toldInside);
    start();
    CHECK(placeOf(strip) == Place{75, 60, 150, 0});
    CHECK(placeOf(page) == Place{285, 435, 0, 0});
    CHECK(placeOf(footer) == Place{120, 10, 9000, 255});
    inside = {0, 0, 100, 100};
    sent(handle, WM_SIZE);
    CHECK(placeOf(strip) == Place{75, 60, 150, 0});
}

TEST_CASE_FIXTURE(MainAnswers, "Tab moves the focus as a dialog's key, with Ctrl it does not") {
    start();
    MSG message = {};
    message.hwnd = page;
    message.message = WM_KEYDOWN;
    message.wParam = VK_TAB;
    CHECK(window->preview(message));
    BYTE keys[256];
    ::GetKeyboardState(keys);
    keys[VK_CONTROL] = 0x80;
    ::SetKeyboardState(keys);
    message.hwnd = page;
    message.message = WM_KEYDOWN;
    message.wParam = VK_TAB;
    CHECK_FALSE(window->preview(message));
    keys[VK_CONTROL] = 0;
    ::SetKeyboardState(keys);
}

TEST_CASE_FIXTURE(MainAnswers, "a window that has gone leaves no resolution behind") {
    const int before = win32::dpiOf(handle);
    const RECT place = {0, 0, 500, 400};
    sent(handle, dpiChanged, MAKEWPARAM(2 * before, 2 * before), reinterpret_cast<LPARAM>(&place));
    REQUIRE(win32::dpiOf(handle) == 2 * before);
    window.reset();
    CHECK(win32::dpiOf(handle) == before);
}

TEST_CASE_FIXTURE(HiddenWindow, "the separator answers 0 to its size and fills it from its corner") {
    app::StaticLine line(handle());
    CHECK(sent(line.handle(), WM_SIZE, SIZE_RESTORED, MAKELPARAM(31, 3)) == 0);
    HWND etched = ::GetWindow(line.handle(), GW_CHILD);
    CHECK(placeIn(line.handle(), etched) == Place{0, 0, 31, 3});
    CHECK(::GetDlgCtrlID(etched) == 0);
    CHECK((::GetWindowLongW(line.handle(), GWL_EXSTYLE) & ~WS_EX_NOPARENTNOTIFY) == 0);
}

namespace {

// Looks at the about box while it is open, and closes it.
struct Onlooker : win32::Window {
    app::FAbout* box = nullptr;
    HWND owner = nullptr;
    int looks = 0;
    Onlooker() { create(L"QuillonTestOnlooker", {}, WS_POPUP, 0, nullptr, nullptr); }

  protected:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message != WM_APP) return Window::onMessage(message, wParam, lParam);
        ++looks;
        CHECK_FALSE(::IsWindowEnabled(owner));
        CHECK(::IsWindowVisible(box->handle()));
        CHECK(::GetFocus() == ::GetDlgItem(box->handle(), IDOK));
        // Neither another command nor the click of a picture ends it.
        CHECK(sent(box->handle(), WM_COMMAND, IDYES) == 0);
        ::PostMessageW(handle(), WM_APP + 1, 0, 0);
        return 0;
    }
};

// Ends the box in its turn.
struct Closer : Onlooker {
    bool wasOpen = false;

  protected:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message != WM_APP + 1) return Onlooker::onMessage(message, wParam, lParam);
        wasOpen = ::IsWindowEnabled(owner) == FALSE;
        CHECK(sent(box->handle(), WM_CLOSE) == 0);
        return 0;
    }
};

}  // namespace

TEST_CASE_FIXTURE(HiddenWindow,
                  "the about box keeps its owner from input until it is closed, and gives it back") {
    ::ShowWindow(handle(), SW_SHOW);
    app::FAbout about(handle(), [] {});
    Closer closer;
    closer.box = &about;
    closer.owner = handle();
    for (int times = 1; times <= 2; ++times) {
        closer.wasOpen = false;
        ::PostMessageW(closer.handle(), WM_APP, 0, 0);
        about.showModal();
        CHECK(closer.looks == times);
        CHECK(closer.wasOpen);
        CHECK(::IsWindowEnabled(handle()));
        CHECK_FALSE(::IsWindowVisible(about.handle()));
        CHECK(::GetActiveWindow() == handle());
    }
}

TEST_CASE_FIXTURE(HiddenWindow,
                  "the about box is drawn anew where only its resolution is told, and looks as it should") {
    app::FAbout about(handle(), [] {});
    ::ShowWindow(about.handle(), SW_SHOWNOACTIVATE);
    ::UpdateWindow(about.handle());
    ::ValidateRect(about.handle(), nullptr);
    RECT place, dirty;
    ::GetWindowRect(about.handle(), &place);
    const int dpi = win32::dpiOf(about.handle());
    CHECK(sent(about.handle(), dpiChanged, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place)) == 0);
    CHECK(::GetUpdateRect(about.handle(), &dirty, FALSE));
    for (HWND child = ::GetWindow(about.handle(), GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
        CAPTURE(win32::windowText(child));
        CHECK((::GetWindowLongW(child, GWL_EXSTYLE) & ~WS_EX_NOPARENTNOTIFY) == 0);
        const bool isButton = win32::windowText(child) == L"OK";
        CHECK(::GetDlgCtrlID(child) == (isButton ? IDOK : 0));
    }
}
