// What every category's page does, tried on the general one.
#include <doctest/doctest.h>

#include "helmkit/client/logger.h"
#include "startup/ucRun.h"
#include "tests/support/page_fixture.h"

namespace {

const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const std::wstring policy = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\policies\\Explorer\\Run";
const int txtFilename = 102, cmdDelete = 103, label4 = 104, lblFilename = 105;

// A key's state as GetKeyState tells it, for a while.
class HeldKey {
  public:
    explicit HeldKey(int key) : key_(key) { set(0x80); }
    ~HeldKey() { set(0); }

  private:
    void set(BYTE state) {
        BYTE keys[256];
        ::GetKeyboardState(keys);
        keys[key_] = state;
        ::SetKeyboardState(keys);
    }
    int key_;
};

struct Page : PageFixture {
    PageOf<startup::ucRun> page{parent.handle()};
    win32::ListView& list = page.ListViewObject();
    std::wstring file = program(folder.file(L"a.exe"), {{L"FileDescription", L"Alpha"}});

    Page() {
        ::SetWindowPos(page.handle(), nullptr, 0, 0, 400, 260, SWP_NOZORDER);
        registry.setString(HKEY_LOCAL_MACHINE, run, L"a", file);
    }
    void init() {
        helmkit::Logger logger = log.logger();
        page.Init(logger);
    }
    void addEmptyPolicyEntry() { registry.setString(HKEY_LOCAL_MACHINE, policy, L"empty", L""); }
    void addProtectedEntry() {
        registry.setString(
            HKEY_CURRENT_USER, run, L"p",
            program(windows + L"\\system32\\ctfmon.exe",
                    {{L"FileDescription", L"Needed"}, {L"CompanyName", L"Microsoft Corporation"}}));
    }
    void release(UINT key) { ::SendMessageW(list.window(), WM_KEYUP, key, 0); }
    void releaseRightButton() {
        NMITEMACTIVATE click = {};
        click.hdr = {list.window(), 101, static_cast<UINT>(NM_RCLICK)};
        ::SendMessageW(page.handle(), WM_NOTIFY, 101, reinterpret_cast<LPARAM>(&click));
    }
    void deselect() {
        LVITEMW none = {};
        none.stateMask = LVIS_SELECTED;
        ::SendMessageW(list.window(), LVM_SETITEMSTATE, static_cast<WPARAM>(-1),
                       reinterpret_cast<LPARAM>(&none));
    }
    RECT place(HWND window) {
        RECT rectangle;
        ::GetWindowRect(window, &rectangle);
        ::MapWindowPoints(nullptr, page.handle(), reinterpret_cast<POINT*>(&rectangle), 2);
        return rectangle;
    }
};

using Captions = std::vector<std::wstring>;

}  // namespace

TEST_CASE_FIXTURE(Page, "the page has its texts") {
    init();
    CHECK(win32::windowText(control(page, label4)) == L"Detected Startup Programs:");
    CHECK(win32::windowText(control(page, lblFilename)) == L"Related File:");
    CHECK(win32::windowText(control(page, cmdDelete)) == L"&Delete From Startup");
    wchar_t title[50] = L"";
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT;
    column.pszText = title;
    column.cchTextMax = 50;
    ::SendMessageW(list.window(), LVM_GETCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    CHECK(std::wstring(title) == L"Program Name");
    ::SendMessageW(list.window(), LVM_GETCOLUMNW, 1, reinterpret_cast<LPARAM>(&column));
    CHECK(std::wstring(title) == L"Manufacturer");
}

TEST_CASE_FIXTURE(PageFixture,
                  "an empty category: empty list and box; Delete and the context menu do nothing") {
    PageOf<startup::ucRun> page(parent.handle());
    helmkit::Logger logger = log.logger();
    page.Init(logger);
    CHECK(page.ListViewObject().count() == 0);
    CHECK(page.ListViewObject().selected() == win32::ListView::none);
    CHECK(fileBox(page) == L"");
    press(page, cmdDelete);
    ::SendMessageW(page.ListViewObject().window(), WM_KEYUP, VK_APPS, 0);
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Page, "a refresh selects the first row and shows its file") {
    registry.setString(HKEY_CURRENT_USER, run, L"b", L"C:\\nowhere\\b.exe");
    init();
    CHECK(list.selected() == 0);
    CHECK(fileBox(page).find(L"a.exe") != std::wstring::npos);
    list.select(1);
    CHECK(fileBox(page) == L"C:\\nowhere\\b.exe");
    page.RefreshList();
    CHECK(list.selected() == 0);
    CHECK(list.count() == 2);
}

TEST_CASE_FIXTURE(Page, "the box follows every change of the selection, also to none") {
    registry.setString(HKEY_CURRENT_USER, run, L"b", L"C:\\nowhere\\b.exe");
    addEmptyPolicyEntry();
    init();
    ::SendMessageW(list.window(), WM_KEYDOWN, VK_DOWN, 0);
    CHECK(list.selected() == 1);
    CHECK(fileBox(page) == L"C:\\nowhere\\b.exe");
    ::SendMessageW(list.window(), WM_KEYDOWN, VK_DOWN, 0);
    CHECK(fileBox(page) == L"Startup program is improperly configured");
    deselect();
    CHECK(fileBox(page) == L"");
    press(page, cmdDelete);
    releaseRightButton();
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Page, "a protected row is refused without a question, a log line or a refresh") {
    addProtectedEntry();
    init();
    list.select(1);
    registry.setString(HKEY_CURRENT_USER, run, L"new", L"x");
    desktop.messageBoxAnswers = {IDOK};
    press(page, cmdDelete);
    REQUIRE(desktop.messageBoxes.size() == 1);
    const auto& box = desktop.messageBoxes[0];
    CHECK(box.text ==
          L"Unwilling to perform. Deleting the 'Needed' may cause serious problems that may require you "
          L"to reinstall your operating system.");
    CHECK(box.title == L"Quillon");
    CHECK(box.style == 48);
    CHECK(box.owner == parent.handle());
    CHECK(registry.hasValue(HKEY_CURRENT_USER, run, L"p"));
    CHECK(list.count() == 2);
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Page, "Cancel deletes nothing, logs nothing and does not refresh") {
    init();
    registry.setString(HKEY_CURRENT_USER, run, L"new", L"x");
    desktop.messageBoxAnswers = {IDCANCEL};
    press(page, cmdDelete);
    CHECK(desktop.messageBoxes[0].text == L"Are you sure you want to delete 'Alpha' from startup?");
    CHECK(desktop.messageBoxes[0].style == 49);
    CHECK(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"a"));
    CHECK(list.count() == 1);
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Page, "OK deletes, tells so and refreshes") {
    init();
    registry.setString(HKEY_CURRENT_USER, run, L"new", L"x");
    desktop.messageBoxAnswers = {IDOK, IDOK};
    press(page, cmdDelete);
    REQUIRE(desktop.messageBoxes.size() == 2);
    CHECK(desktop.messageBoxes[1].text == L"'Alpha' is deleted from startup successfully. ");
    CHECK(desktop.messageBoxes[1].style == 64);
    CHECK_FALSE(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"a"));
    REQUIRE(list.count() == 1);
    CHECK(list.text(0, 0) == L"new");
    CHECK(list.selected() == 0);
}

TEST_CASE_FIXTURE(Page, "inserted text in a message is not searched for placeholders again") {
    registry.setString(HKEY_CURRENT_USER, run, L"100%1 sure", L"x");
    init();
    list.select(1);
    desktop.messageBoxAnswers = {IDCANCEL};
    press(page, cmdDelete);
    CHECK(desktop.messageBoxes[0].text == L"Are you sure you want to delete '100%1 sure' from startup?");
}

TEST_CASE_FIXTURE(Page, "the context menu opens at the mouse, by right button or context-menu key") {
    init();
    desktop.popUpAnswers = {0, 0};
    releaseRightButton();
    release(VK_APPS);
    REQUIRE(desktop.popUps.size() == 2);
    for (const auto& popUp : desktop.popUps) {
        CHECK(popUp.captions == Captions{L"&Delete", L"", L"&Properties"});
        CHECK(popUp.position.x == desktop.cursor.x);
        CHECK(popUp.position.y == desktop.cursor.y);
    }
}

TEST_CASE_FIXTURE(Page, "an entry without a file has no Properties in its menu, and Alt+Enter does nothing") {
    addEmptyPolicyEntry();
    init();
    list.select(1);
    desktop.popUpAnswers = {0};
    releaseRightButton();
    CHECK(desktop.popUps.at(0).captions == Captions{L"&Delete"});
    HeldKey alt(VK_MENU);
    ::SendMessageW(list.window(), WM_SYSKEYUP, VK_RETURN, 0);
    CHECK(desktop.shellRequests.empty());
}

TEST_CASE_FIXTURE(Page, "the menu's Delete is the button's, its Properties opens the shell's dialog") {
    init();
    desktop.popUpAnswers = {1, 2};
    desktop.messageBoxAnswers = {IDCANCEL};
    releaseRightButton();
    CHECK(desktop.messageBoxes.size() == 1);
    desktop.shellAnswers = {true};
    releaseRightButton();
    REQUIRE(desktop.shellRequests.size() == 1);
    CHECK(desktop.shellRequests[0].owner == parent.handle());
    CHECK(desktop.shellRequests[0].file == page.itemOf(0).record().text(L"DLL"));
}

TEST_CASE_FIXTURE(Page, "Alt+Enter opens the properties; Enter with other modifiers does not") {
    init();
    desktop.shellAnswers = {true};
    release(VK_RETURN);
    {
        HeldKey alt(VK_MENU);
        {
            HeldKey shift(VK_SHIFT);
            ::SendMessageW(list.window(), WM_SYSKEYUP, VK_RETURN, 0);
            CHECK(desktop.shellRequests.empty());
        }
        ::SendMessageW(list.window(), WM_SYSKEYUP, VK_RETURN, 0);
        deselect();
        ::SendMessageW(list.window(), WM_SYSKEYUP, VK_RETURN, 0);
    }
    CHECK(desktop.shellRequests.size() == 1);
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Page, "Delete and F5 are not the control's keys") {
    init();
    registry.setString(HKEY_CURRENT_USER, run, L"new", L"x");
    for (UINT key : {VK_DELETE, VK_F5}) {
        for (UINT message : {WM_KEYDOWN, WM_KEYUP}) ::SendMessageW(list.window(), message, key, 0);
    }
    CHECK(desktop.messageBoxes.empty());
    CHECK(list.count() == 1);
    CHECK(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"a"));
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Page, "the properties of a file that has gone meanwhile") {
    init();
    const std::wstring shown = fileBox(page);
    ::DeleteFileW(file.c_str());
    desktop.popUpAnswers = {2};
    desktop.messageBoxAnswers = {IDOK};
    releaseRightButton();
    CHECK(desktop.messageBoxes.at(0).text == L"File '" + shown + L"' not found. ");
    CHECK(desktop.messageBoxes.at(0).style == 48);
}

TEST_CASE_FIXTURE(Page, "layout follows the page's size") {
    init();
    const int dpi = win32::dpiOf(page.handle());
    auto pixels = [&](int twips) { return win32::toPixels(twips, dpi); };
    RECT list0 = place(list.window()), button = place(control(page, cmdDelete)),
         box = place(control(page, txtFilename)), label = place(control(page, lblFilename));
    CHECK(list0.right - list0.left == 400);
    CHECK(button.right == 400 - pixels(15));
    CHECK(button.bottom == 260 - pixels(60));
    CHECK(box.top == button.top - pixels(360));
    CHECK(box.right == 400 - pixels(15));
    CHECK(label.top == box.top + pixels(30));
    CHECK(list0.bottom == box.top - pixels(60));
    const int listTwips = win32::toTwips(400, dpi);
    for (int column : {0, 1}) {
        CHECK(::SendMessageW(list.window(), LVM_GETCOLUMNWIDTH, column, 0) ==
              pixels((listTwips - 120 - 255) / 2));
    }
}

TEST_CASE_FIXTURE(Page, "a page too small for its rules keeps what would come out negative") {
    init();
    const RECT before = place(list.window());
    ::SetWindowPos(page.handle(), nullptr, 0, 0, 10, 20, SWP_NOZORDER);
    const RECT after = place(list.window());
    CHECK(after.bottom - after.top == before.bottom - before.top);
    CHECK(after.right - after.left == 10);
    CHECK(::SendMessageW(list.window(), LVM_GETCOLUMNWIDTH, 0, 0) == 0);
}

TEST_CASE_FIXTURE(Page, "a failing refresh is logged under its procedure and keeps the window usable") {
    init();
    classes.revoke();
    page.RefreshList();
    REQUIRE_FALSE(log.lines.empty());
    CHECK(log.lines[0].level == 4);
    CHECK(log.lines[0].source.find(L"ucRun.") == 0);
    CHECK(log.lines[0].code != 0);
}
