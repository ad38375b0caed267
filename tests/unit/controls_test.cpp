// The common controls, filters before controls, message loops and menus, by the messages that they get.
#include <doctest/doctest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/replaced_import.h"
#include "tests/support/text.h"
#include "win32/base/error.h"
#include "win32/windows/key_releases.h"
#include "win32/windows/list_view.h"
#include "win32/windows/menu.h"
#include "win32/windows/message_loop.h"
#include "win32/windows/mouse_releases.h"
#include "win32/windows/placed_control.h"
#include "win32/windows/tab_page.h"
#include "win32/windows/tab_strip.h"
#include "win32/windows/window.h"

namespace {

using win32::ListView;

struct Message {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    bool operator==(const Message&) const = default;
};

class Plain : public win32::Window {
  public:
    Plain() { create(L"QuillonPlain", {}, WS_POPUP, 0, nullptr, nullptr); }
};

// Notes what a control gets, below every filter.
std::vector<Message> got;
WNDPROC original = nullptr;
LRESULT CALLBACK noting(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    got.push_back({message, wParam, lParam});
    return ::CallWindowProcW(original, window, message, wParam, lParam);
}
void note(HWND control) {
    original = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&noting)));
    got.clear();
}
bool hasGot(UINT message, WPARAM wParam, LPARAM lParam) {
    const Message wanted = {message, wParam, lParam};
    return std::find(got.begin(), got.end(), wanted) != got.end();
}

struct Controls {
    Plain parent;
    ListView list;
    win32::TabStrip tabs;

    Controls() {
        ::SetWindowPos(parent.handle(), nullptr, 0, 0, 300, 200, SWP_NOZORDER | SWP_NOACTIVATE);
        list.create(parent.handle(), 5);
        tabs.create(parent.handle(), 6);
    }
    static DWORD style(HWND window, int which = GWL_STYLE) {
        return static_cast<DWORD>(::GetWindowLongW(window, which));
    }
};

unsigned heldKeys = 0;
SHORT WINAPI keyState(int key) {
    const unsigned bit = key == VK_SHIFT ? 1 : key == VK_CONTROL ? 2 : key == VK_MENU ? 4 : 8;
    return heldKeys & bit ? static_cast<SHORT>(0x8000) : SHORT{1};
}

std::vector<UINT_PTR> invalid;
BOOL WINAPI invalidate(HWND window, const RECT* place, BOOL erases) {
    invalid = {reinterpret_cast<UINT_PTR>(window), reinterpret_cast<UINT_PTR>(place), UINT_PTR(erases)};
    return TRUE;
}

// A filter that keeps what it is told to keep, and fails where it is told to.
struct Filter : win32::MessageFilter {
    std::vector<UINT> seen;
    UINT kept = 0, failing = 0;
    explicit Filter(HWND control) { attach(control); }
    bool handle(UINT message, WPARAM, LPARAM) override {
        seen.push_back(message);
        if (message == failing) win32::raise(E_ABORT, L"failed");
        return message == kept;
    }
};

// Runs the messages that wait, and ends what would wait for more.
void CALLBACK endLoop(HWND, UINT, UINT_PTR, DWORD) {
    FAIL_CHECK("a loop had to be ended");
    ::PostQuitMessage(99);
}
struct Limit {
    UINT_PTR timer = ::SetTimer(nullptr, 0, 20000, &endLoop);
    ~Limit() {
        ::KillTimer(nullptr, timer);
        MSG message;
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) continue;
    }
};

std::wstring caption(HMENU menu, int row) {
    wchar_t text[100] = L"";
    ::GetMenuStringW(menu, row, text, 100, MF_BYPOSITION);
    return text;
}

bool passAll(MSG&) {
    return false;
}

}  // namespace

TEST_CASE_FIXTURE(Controls, "a list is made for whole rows, one selected, its images another's") {
    CHECK(style(list.window()) == (WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL |
                                   LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS));
    CHECK((style(list.window(), GWL_EXSTYLE) & WS_EX_CLIENTEDGE) != 0);
    CHECK(win32::send(list.window(), LVM_GETEXTENDEDLISTVIEWSTYLE) == LVS_EX_FULLROWSELECT);
    CHECK(::GetDlgCtrlID(list.window()) == 5);
}

TEST_CASE_FIXTURE(Controls, "a list's columns and rows are what they are given, in their order") {
    list.addColumn(0, L"first");
    list.addColumn(1, L"second");
    wchar_t title[20] = L"";
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT | LVCF_SUBITEM;
    column.pszText = title;
    column.cchTextMax = 20;
    for (int i : {0, 1}) {
        REQUIRE(::SendMessageW(list.window(), LVM_GETCOLUMNW, i, reinterpret_cast<LPARAM>(&column)));
        CHECK(std::wstring(title) == (i ? L"second" : L"first"));
        CHECK(column.iSubItem == i);
    }
    list.setColumnWidth(1, 70);
    CHECK(win32::send(list.window(), LVM_GETCOLUMNWIDTH, 1) == 70);
    list.setColumnWidth(1, -1);
    CHECK(win32::send(list.window(), LVM_GETCOLUMNWIDTH, 1) == 0);
    CHECK(list.selected() == ListView::none);
    CHECK(list.addRow(L"a", 2, 7) == 0);
    CHECK(list.addRow(L"b", 3, 8) == 1);
    CHECK(list.count() == 2);
    list.setText(0, 1, L"below second");
    CHECK(list.text(0, 0) == L"a");
    CHECK(list.text(0, 1) == L"below second");
    CHECK(list.text(1, 1) == L"");
    CHECK(list.image(0) == 2);
    CHECK(list.image(1) == 3);
    CHECK(list.image(2) == ListView::none);
    CHECK(list.tag(0) == 7);
    CHECK(list.tag(1) == 8);
    CHECK(list.tag(2) == ListView::none);
    list.clear();
    CHECK(list.count() == 0);
}

TEST_CASE_FIXTURE(Controls, "a row's text has any length") {
    list.addColumn(0, L"column");
    list.addColumn(1, L"column");
    list.addRow(L"row", 0, 0);
    for (size_t length : {1, 510, 511, 512, 2046, 2047, 2048, 9000}) {
        const std::wstring text = std::wstring(length - 1, L'x') + L"y";
        list.setText(0, 1, text);
        const bool isSame = list.text(0, 1) == text;
        CHECK(isSame);
    }
}

TEST_CASE_FIXTURE(Controls, "a list is told what to select, how many rows come, and when to draw") {
    for (int i = 0; i < 50; ++i) list.addRow(L"row", 0, 0);
    note(list.window());
    list.reserve(70);
    CHECK(hasGot(LVM_SETITEMCOUNT, 70, 0));
    list.select(40);
    CHECK(hasGot(LVM_ENSUREVISIBLE, 40, FALSE));
    CHECK(list.selected() == 40);
    CHECK(win32::send(list.window(), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), MAKELPARAM(LVNI_FOCUSED, 0)) ==
          40);
    list.setImages(reinterpret_cast<HIMAGELIST>(0x77));
    CHECK(hasGot(LVM_SETIMAGELIST, LVSIL_SMALL, 0x77));
    list.setImages(nullptr);
    const ReplacedImport call("InvalidateRect", &invalidate);
    invalid.clear();
    {
        const win32::DrawingOff off(list);
        CHECK(hasGot(WM_SETREDRAW, FALSE, 0));
        CHECK(invalid.empty());
    }
    CHECK(hasGot(WM_SETREDRAW, TRUE, 0));
    CHECK((invalid == std::vector<UINT_PTR>{reinterpret_cast<UINT_PTR>(list.window()), 0, TRUE}));
}

TEST_CASE_FIXTURE(Controls, "tabs have keys, and room that grows with the resolution") {
    CHECK(style(tabs.window()) == (WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS));
    CHECK(style(tabs.window(), GWL_EXSTYLE) == 0);
    CHECK(::GetDlgCtrlID(tabs.window()) == 6);
    CHECK(tabs.selectedKey().empty());
    note(tabs.window());
    tabs.adoptResolution(96);
    CHECK(hasGot(TCM_SETPADDING, 0, MAKELPARAM(6, 3)));
    tabs.adoptResolution(192);
    CHECK(hasGot(TCM_SETPADDING, 0, MAKELPARAM(12, 6)));
    tabs.addTab(L"one", L"First");
    tabs.addTab(L"two", L"Second");
    CHECK(tabs.count() == 2);
    wchar_t text[20] = L"";
    TCITEMW tab = {};
    tab.mask = TCIF_TEXT;
    tab.pszText = text;
    tab.cchTextMax = 20;
    for (int i : {0, 1}) {
        REQUIRE(::SendMessageW(tabs.window(), TCM_GETITEMW, i, reinterpret_cast<LPARAM>(&tab)));
        CHECK(std::wstring(text) == (i ? L"Second" : L"First"));
    }
    tabs.select(2);
    CHECK(tabs.selectedKey() == L"two");
    tabs.select(1);
    CHECK(tabs.selectedKey() == L"one");
}

TEST_CASE_FIXTURE(Controls, "a filter sees each message first and may keep it, and goes without a trace") {
    HWND control = list.window();
    note(control);
    const LONG_PTR before = ::GetWindowLongPtrW(control, GWLP_WNDPROC);
    std::vector<std::wstring> errors;
    win32::setWindowErrorSink([&](const win32::Error& error) { errors.push_back(error.description); });
    {
        Filter filter(control);
        filter.kept = WM_APP;
        filter.failing = WM_APP + 1;
        for (UINT message : {WM_APP, WM_APP + 1, WM_APP + 2})
            CHECK(::SendMessageW(control, message, 3, 4) == 0);
        CHECK((filter.seen == std::vector<UINT>{WM_APP, WM_APP + 1, WM_APP + 2}));
        CHECK((got == std::vector<Message>{{WM_APP + 1, 3, 4}, {WM_APP + 2, 3, 4}}));
        CHECK((errors == std::vector<std::wstring>{L"failed"}));
        CHECK(::SendMessageW(control, LVM_GETITEMCOUNT, 0, 0) == list.count());
    }
    CHECK(::GetWindowLongPtrW(control, GWLP_WNDPROC) == before);
    got.clear();
    ::SendMessageW(control, WM_APP, 3, 4);
    CHECK(got.size() == 1);
    {
        Filter filter(control);
        ::DestroyWindow(control);
        CHECK(hasGot(WM_NCDESTROY, 0, 0));
        CHECK(std::count(filter.seen.begin(), filter.seen.end(), UINT{WM_NCDESTROY}) == 0);
    }
    win32::setWindowErrorSink(nullptr);
}

TEST_CASE_FIXTURE(Controls,
                  "releases of keys come with the modifiers held, those of the mouse by themselves") {
    const ReplacedImport call("GetKeyState", &keyState);
    std::vector<std::pair<UINT, unsigned>> keys;
    int clicks = 0;
    win32::KeyReleases releases;
    win32::MouseReleases buttons;
    note(list.window());
    releases.listen(list.window(), [&](UINT key, unsigned modifiers) { keys.emplace_back(key, modifiers); });
    buttons.listen(tabs.window(), [&] { ++clicks; });
    for (unsigned held : {0u, 1u, 2u, 4u, 7u}) {
        heldKeys = held;
        CHECK(win32::heldModifiers() == held);
        keys.clear();
        for (UINT message : {WM_KEYDOWN, WM_KEYUP, WM_SYSKEYDOWN, WM_SYSKEYUP, WM_CHAR})
            ::SendMessageW(list.window(), message, VK_F5, 0);
        CHECK((keys == std::vector<std::pair<UINT, unsigned>>{{VK_F5, held}, {VK_F5, held}}));
    }
    CHECK(hasGot(WM_KEYUP, VK_F5, 0));
    got.clear();
    for (WPARAM key : {VK_RETURN, VK_SPACE}) {
        ::SendMessageW(list.window(), WM_SYSCHAR, key, 0);
        ::SendMessageW(list.window(), WM_CHAR, key, 0);
    }
    CHECK_FALSE(hasGot(WM_SYSCHAR, VK_RETURN, 0));
    CHECK(hasGot(WM_SYSCHAR, VK_SPACE, 0));
    CHECK(hasGot(WM_CHAR, VK_RETURN, 0));
    for (UINT message : {WM_RBUTTONUP, WM_MOUSEMOVE, WM_LBUTTONUP})
        ::SendMessageW(tabs.window(), message, 0, 0);
    CHECK(clicks == 1);
}

TEST_CASE_FIXTURE(Controls, "a control is moved to its place, a negative width or height changes nothing") {
    win32::PlacedControl placed(list.window(), 15, 30, 150, 300);
    CHECK(placed.window() == list.window());
    const auto place = [&](int dpi) {
        placed.apply(dpi);
        RECT found;
        ::GetWindowRect(list.window(), &found);
        ::MapWindowPoints(nullptr, parent.handle(), reinterpret_cast<POINT*>(&found), 2);
        return std::vector<LONG>{found.left, found.top, found.right - found.left, found.bottom - found.top};
    };
    CHECK((place(96) == std::vector<LONG>{1, 2, 10, 20}));
    CHECK((place(1440) == std::vector<LONG>{15, 30, 150, 300}));
    placed.setLeft(-15);
    placed.setTop(45);
    placed.setWidth(-1);
    placed.setHeight(-1);
    CHECK((place(96) == std::vector<LONG>{-1, 3, 10, 20}));
    placed.setWidth(0);
    placed.setHeight(45);
    CHECK((place(96) == std::vector<LONG>{-1, 3, 0, 3}));
    CHECK(placed.left() == -15);
    CHECK(placed.top() == 45);
    CHECK(placed.width() == 0);
    CHECK(placed.height() == 45);
}

TEST_CASE_FIXTURE(Controls, "a loop runs until the end is asked for, without what the preview consumes") {
    const Limit limit;
    note(list.window());
    const auto post = [&](UINT message) { ::PostMessageW(list.window(), message, 1, 2); };
    post(WM_APP);
    post(WM_APP + 1);
    ::PostQuitMessage(42);
    CHECK(win32::runMessageLoop([](MSG& message) { return message.message == WM_APP; }) == 42);
    CHECK_FALSE(hasGot(WM_APP, 1, 2));
    CHECK(hasGot(WM_APP + 1, 1, 2));

    got.clear();
    for (UINT i = 0; i < 3; ++i) post(WM_APP + i);
    win32::runMessageLoopWhile([] { return !hasGot(WM_APP + 1, 1, 2); },
                               [](MSG& message) { return message.message == WM_APP; });
    CHECK_FALSE(hasGot(WM_APP, 1, 2));
    CHECK_FALSE(hasGot(WM_APP + 2, 1, 2));
    win32::runPendingMessages();
    CHECK(hasGot(WM_APP + 2, 1, 2));
}

TEST_CASE_FIXTURE(Controls, "an end that is asked for inside another loop ends the outer one") {
    const Limit limit;
    ::PostQuitMessage(43);
    win32::runMessageLoopWhile([] { return true; }, &passAll);
    CHECK(win32::runMessageLoop(&passAll) == 43);
    ::PostQuitMessage(44);
    win32::runPendingMessages();
    CHECK(win32::runMessageLoop(&passAll) == 44);
}

TEST_CASE_FIXTURE(Controls, "in each loop a key that is pressed becomes a character on its way") {
    const Limit limit;
    note(list.window());
    const auto isCharacter = [] {
        return std::any_of(got.begin(), got.end(), [](const Message& m) { return m.message == WM_CHAR; });
    };
    const auto press = [&] {
        got.clear();
        ::PostMessageW(list.window(), WM_KEYDOWN, 'A', 0);
    };
    press();
    ::PostQuitMessage(0);
    win32::runMessageLoop(&passAll);
    CHECK(isCharacter());
    press();
    win32::runPendingMessages();
    CHECK(isCharacter());
    press();
    win32::runMessageLoopWhile([&] { return !isCharacter(); }, &passAll);
    CHECK(isCharacter());
}

TEST_CASE("menus are made from their rows: commands, separators, menus below") {
    const std::vector<win32::MenuRow> rows = {
        {0, L"File", {{7, L"Open"}, {0, L"-"}, {8, L"More", {{9, L"Deep"}}}}}, {10, L"Help"}};
    HMENU bar = win32::createMenuBar(rows);
    const win32::OwnedMenu popUp = win32::createPopUpMenu(rows);
    for (HMENU menu : {bar, popUp.get()}) {
        REQUIRE(::GetMenuItemCount(menu) == 2);
        CHECK(caption(menu, 0) == L"File");
        CHECK(caption(menu, 1) == L"Help");
        CHECK(::GetMenuItemID(menu, 1) == 10);
        HMENU file = ::GetSubMenu(menu, 0);
        REQUIRE(::GetMenuItemCount(file) == 3);
        CHECK(::GetMenuItemID(file, 0) == 7);
        CHECK(caption(file, 0) == L"Open");
        CHECK((::GetMenuState(file, 0, MF_BYPOSITION) & MF_SEPARATOR) == 0);
        CHECK((::GetMenuState(file, 1, MF_BYPOSITION) & MF_SEPARATOR) != 0);
        HMENU deep = ::GetSubMenu(file, 2);
        REQUIRE(::GetMenuItemCount(deep) == 1);
        CHECK(caption(deep, 0) == L"Deep");
        CHECK(::GetMenuItemID(deep, 0) == 9);
    }
    ::DestroyMenu(bar);
}

namespace {

struct Page : win32::TabPage {
    explicit Page(HWND parent) : TabPage(parent, L"aPage") {}
};

// The system's colours as a test wants them.
struct Colours {
    int names[4] = {COLOR_BTNFACE, COLOR_WINDOW, COLOR_BTNTEXT, COLOR_WINDOWTEXT};
    COLORREF before[4];
    Colours() {
        const COLORREF own[] = {RGB(10, 20, 30), RGB(40, 50, 60), RGB(70, 80, 90), RGB(100, 110, 120)};
        for (int i = 0; i < 4; ++i) before[i] = ::GetSysColor(names[i]);
        ::SetSysColors(4, names, own);
    }
    ~Colours() { ::SetSysColors(4, names, before); }
};

}  // namespace

TEST_CASE_FIXTURE(Controls, "a page has the colour of a tab's body, and so has what stands on it") {
    const Colours colours;
    Page page(parent.handle());
    CHECK(style(page.handle()) == (WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN));
    CHECK(style(page.handle(), GWL_EXSTYLE) == WS_EX_CONTROLPARENT);
    CHECK(win32::windowText(page.handle()) == L"aPage");
    ::MoveWindow(page.handle(), 0, 0, 20, 10, FALSE);
    using IsActive = BOOL(WINAPI*)();
    const auto isActive = reinterpret_cast<IsActive>(
        reinterpret_cast<void*>(::GetProcAddress(::LoadLibraryW(L"uxtheme.dll"), "IsThemeActive")));
    const bool isThemed = isActive && isActive();
    const COLORREF body = ::GetSysColor(isThemed ? COLOR_WINDOW : COLOR_BTNFACE),
                   text = ::GetSysColor(isThemed ? COLOR_WINDOWTEXT : COLOR_BTNTEXT);
    HDC screen = ::GetDC(nullptr), canvas = ::CreateCompatibleDC(screen);
    HBITMAP bitmap = ::CreateCompatibleBitmap(screen, 30, 30);
    HGDIOBJ before = ::SelectObject(canvas, bitmap);
    ::PatBlt(canvas, 0, 0, 30, 30, WHITENESS);
    CHECK(win32::send(page.handle(), WM_ERASEBKGND, reinterpret_cast<WPARAM>(canvas)) == TRUE);
    CHECK(::GetPixel(canvas, 0, 0) == body);
    CHECK(::GetPixel(canvas, 19, 9) == body);
    CHECK(::GetPixel(canvas, 20, 10) == RGB(255, 255, 255));
    HWND control = win32::createControl(page.handle(), L"STATIC", {}, 0, 0, 3);
    const LRESULT brush = win32::send(page.handle(), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(canvas),
                                      reinterpret_cast<LPARAM>(control));
    CHECK(brush == reinterpret_cast<LRESULT>(::GetSysColorBrush(isThemed ? COLOR_WINDOW : COLOR_BTNFACE)));
    CHECK(::GetBkColor(canvas) == body);
    CHECK(::GetTextColor(canvas) == text);
    ::SelectObject(canvas, before);
    ::DeleteObject(bitmap);
    ::DeleteDC(canvas);
    ::ReleaseDC(nullptr, screen);
}
