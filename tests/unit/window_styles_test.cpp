// What every window inside the main window and the about box is made as.
#include <doctest/doctest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "app/FAbout.h"
#include "app/FMain.h"
#include "startup/page_layout.h"
#include "tests/support/page_fixture.h"
#include "tests/support/started_window.h"

namespace {

const DWORD shown = WS_CHILD | WS_VISIBLE, onKeys = shown | WS_TABSTOP;

DWORD style(HWND window) {
    return static_cast<DWORD>(::GetWindowLongW(window, GWL_STYLE));
}
bool isSunken(HWND window) {
    return (::GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_CLIENTEDGE) != 0;
}

struct Windows : PageFixture {
    app::FMain window;

    Windows() { startWindow(window, desktop); }
    HWND child(const wchar_t* className, const wchar_t* text) {
        HWND found = ::FindWindowExW(window.handle(), nullptr, className, text);
        REQUIRE(found);
        return found;
    }
};

}  // namespace

TEST_CASE_FIXTURE(Windows, "each part of a page is a text, a box to read from or a button") {
    for (const wchar_t* name : {L"ucRun1", L"ucWinlogon1", L"ucOther1", L"ucServices1"}) {
        CAPTURE(name);
        const HWND page = child(nullptr, name);
        CHECK(style(::GetDlgItem(page, startup::label4Id)) == (shown | SS_NOPREFIX));
        CHECK(style(::GetDlgItem(page, startup::lblFilenameId)) == shown);
        CHECK(style(::GetDlgItem(page, startup::cmdDeleteId)) == (onKeys | BS_PUSHBUTTON));
        const HWND box = ::GetDlgItem(page, startup::txtFilenameId);
        CHECK((box == nullptr) == (name == std::wstring(L"ucOther1")));
        if (box) CHECK(style(box) == (onKeys | ES_READONLY | ES_AUTOHSCROLL));
        for (int part : {startup::label4Id, startup::lblFilenameId, startup::cmdDeleteId})
            CHECK_FALSE(isSunken(::GetDlgItem(page, part)));
        for (HWND part : {::GetDlgItem(page, startup::lvId), box}) CHECK((!part || isSunken(part)));
    }
}

TEST_CASE_FIXTURE(Windows, "the window's own parts are the tabs and a text") {
    CHECK(style(child(L"SysTabControl32", nullptr)) == (onKeys | WS_CLIPSIBLINGS));
    const HWND footer = ::FindWindowExW(window.handle(), nullptr, L"Static", nullptr);
    CHECK(style(footer) == (shown | SS_NOPREFIX));
    CHECK(::GetWindowLongW(footer, GWL_EXSTYLE) == 0);
    CHECK(::GetDlgCtrlID(child(L"SysTabControl32", nullptr)) == 200);
    CHECK(::GetDlgCtrlID(footer) == 201);
}

TEST_CASE_FIXTURE(PageFixture, "the about box has texts, one to click on, a frame and a button to leave by") {
    app::FAbout box(parent.handle(), [] {});
    std::vector<DWORD> styles;
    for (const wchar_t* name : {L"Static", L"Button"}) {
        for (HWND part = nullptr; (part = ::FindWindowExW(box.handle(), part, name, nullptr));)
            styles.push_back(style(part));
    }
    std::sort(styles.begin(), styles.end());
    std::vector<DWORD> wanted = {shown | SS_NOPREFIX, shown | SS_NOPREFIX | SS_NOTIFY, shown | BS_GROUPBOX,
                                 onKeys | BS_DEFPUSHBUTTON};
    std::sort(wanted.begin(), wanted.end());
    CHECK(styles == wanted);
}

TEST_CASE_FIXTURE(Windows,
                  "a window has the program's icon, an arrow, the face of a button and double-clicks") {
    WNDCLASSEXW made = {};
    made.cbSize = sizeof made;
    REQUIRE(::GetClassInfoExW(::GetModuleHandleW(nullptr), L"QuillonMain", &made));
    CHECK(made.style == CS_DBLCLKS);
    const auto* const icon =
        ::LoadImageW(made.hInstance, MAKEINTRESOURCEW(1), IMAGE_ICON, 0, 0, LR_DEFAULTSIZE | LR_SHARED);
    CHECK(icon != nullptr);
    CHECK(made.hIcon == icon);
    CHECK(made.hCursor == ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)));
    CHECK(made.hbrBackground == reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1));
}
