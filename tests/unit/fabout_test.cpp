#include <doctest/doctest.h>

#include "app/FAbout.h"
#include "tests/support/page_fixture.h"

namespace {

struct About {
    HiddenWindow owner;
    int visits = 0;
    app::FAbout box{owner.handle(), [this] { ++visits; }};

    HWND child(const wchar_t* text) {
        for (HWND window = ::GetWindow(box.handle(), GW_CHILD); window;
             window = ::GetWindow(window, GW_HWNDNEXT)) {
            if (win32::windowText(window).find(text) == 0) return window;
        }
        return nullptr;
    }
    HWND ofClass(const wchar_t* name) { return ::FindWindowExW(box.handle(), nullptr, name, nullptr); }
    // Shows the box with a key already on its way; a box that does not close by it would hang, so the test
    // asks it to close a second later and tells that it had to.
    bool closesBy(UINT key) {
        ::PostMessageW(child(L"OK"), WM_KEYDOWN, key, 0);
        const UINT_PTR timer = ::SetTimer(box.handle(), 1, 5000, &closeLate);
        timedOut = false;
        box.showModal();
        ::KillTimer(box.handle(), timer);
        return !timedOut;
    }
    static inline bool timedOut = false;
    static void CALLBACK closeLate(HWND window, UINT, UINT_PTR, DWORD) {
        timedOut = true;
        ::SendMessageW(window, WM_CLOSE, 0, 0);
    }
};

}  // namespace

TEST_CASE_FIXTURE(About, "Escape, Enter on the default button and the close box end the about box") {
    CHECK(closesBy(VK_ESCAPE));
    CHECK(closesBy(VK_RETURN));
    ::PostMessageW(box.handle(), WM_CLOSE, 0, 0);
    box.showModal();
    CHECK_FALSE(::IsWindowVisible(box.handle()));
    CHECK(::IsWindowEnabled(owner.handle()));
    CHECK(visits == 0);
}

TEST_CASE_FIXTURE(About, "the product line stands over the legal notice") {
    CHECK(win32::windowText(child(L"Quillon")) ==
          L"Quillon Version 2.1\n\n"
          L"Copyright \x00A9 2026 Mardelix. Quillon is free software under the MIT License. It comes without "
          L"any "
          L"warranty; back up your settings before you delete anything.");
    CHECK(child(L"Visit Mardelix: http://mardelix.example/"));
}

TEST_CASE_FIXTURE(About, "a release over the link and a double-click of the picture open the home page") {
    ::SendMessageW(child(L"Visit"), WM_LBUTTONDOWN, 0, 0);
    CHECK(visits == 0);
    ::SendMessageW(child(L"Visit"), WM_LBUTTONUP, 0, 0);
    CHECK(visits == 1);
    ::SendMessageW(ofClass(L"QuillonPicture"), WM_LBUTTONDOWN, 0, 0);
    CHECK(visits == 1);
    ::SendMessageW(ofClass(L"QuillonPicture"), WM_LBUTTONDBLCLK, 0, 0);
    CHECK(visits == 2);
}

TEST_CASE_FIXTURE(About, "the box stands over the middle of its owner, its frame behind what it surrounds") {
    const int dpi = win32::dpiOf(box.handle());
    RECT client, around, own;
    ::GetClientRect(box.handle(), &client);
    CHECK(client.right == win32::toPixels(6000, dpi));
    CHECK(client.bottom == win32::toPixels(3450, dpi));
    ::GetWindowRect(owner.handle(), &around);
    ::GetWindowRect(box.handle(), &own);
    CHECK(own.left == (around.left + around.right - (own.right - own.left)) / 2);
    CHECK(own.top == (around.top + around.bottom - (own.bottom - own.top)) / 2);
    HWND last = ::GetWindow(::GetWindow(box.handle(), GW_CHILD), GW_HWNDLAST);
    CHECK((::GetWindowLongW(last, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX);
}

TEST_CASE_FIXTURE(About, "the measures of the box are exact to the twip") {
    using Place = std::vector<int>;
    RECT place = {30, 40, 0, 0}, client;
    ::SendMessageW(box.handle(), 0x02E0, MAKEWPARAM(1440, 1440), reinterpret_cast<LPARAM>(&place));
    ::GetClientRect(box.handle(), &client);
    CHECK(Place{int(client.right), int(client.bottom)} == Place{6000, 3450});
    auto placeOf = [&](HWND control) { return placeIn(box.handle(), control); };
    CHECK(placeOf(ofClass(L"QuillonPicture")) == Place{240, 240, 960, 960});
    CHECK(placeOf(child(L"Quillon Version")) == Place{1440, 240, 4320, 1500});
    CHECK(placeOf(child(L"Visit")) == Place{1440, 1860, 4320, 270});
    HWND frame = ::GetWindow(::GetWindow(box.handle(), GW_CHILD), GW_HWNDLAST);
    CHECK(placeOf(frame) == Place{120, 60, 5760, 2220});
    CHECK(placeOf(ofClass(L"QuillonStaticLine")) == Place{120, 2505, 5760, 30});
    CHECK(placeOf(::GetDlgItem(box.handle(), IDOK)) == Place{4545, 2760, 1335, 405});
}

TEST_CASE_FIXTURE(About, "the link is blue, underlined and under a hand, the notice is not") {
    HDC context = ::CreateCompatibleDC(nullptr);
    auto colour = [&](HWND label) {
        ::SetTextColor(context, RGB(1, 2, 3));
        CHECK(::SendMessageW(box.handle(), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(context),
                             reinterpret_cast<LPARAM>(label)) != 0);
        return ::GetTextColor(context);
    };
    auto isUnderlined = [](HWND label) {
        LOGFONTW font = {};
        ::GetObjectW(reinterpret_cast<HFONT>(::SendMessageW(label, WM_GETFONT, 0, 0)), sizeof font, &font);
        return font.lfUnderline != 0;
    };
    auto cursorOver = [&](HWND label) {
        ::SetCursor(nullptr);
        ::SendMessageW(box.handle(), WM_SETCURSOR, reinterpret_cast<WPARAM>(label),
                       MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        return ::GetCursor();
    };
    HWND link = child(L"Visit"), notice = child(L"Quillon Version");
    CHECK(colour(link) == RGB(0, 0, 238));
    CHECK(colour(notice) != RGB(0, 0, 238));
    CHECK(isUnderlined(link));
    CHECK_FALSE(isUnderlined(notice));
    CHECK(cursorOver(link) == ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32649)));
    CHECK(cursorOver(notice) != ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32649)));
    ::DeleteDC(context);
}

TEST_CASE_FIXTURE(About, "the separator is an etched static window that fills its control") {
    HWND line = ofClass(L"QuillonStaticLine");
    HWND etched = ::GetWindow(line, GW_CHILD);
    CHECK(::GetWindowLongW(etched, GWL_STYLE) == 0x50000010);
    CHECK((::GetWindowLongW(etched, GWL_EXSTYLE) & 0x20004) == 0x20004);
    CHECK(win32::windowText(etched) == L"StaticLine");
    ::SetWindowPos(line, nullptr, 0, 0, 77, 5, SWP_NOMOVE | SWP_NOZORDER);
    RECT size;
    ::GetWindowRect(etched, &size);
    CHECK(size.right - size.left == 77);
    CHECK(size.bottom - size.top == 5);
}

TEST_CASE_FIXTURE(HiddenWindow,
                  "the separator takes its etched window with it, wherever that stands by then") {
    HiddenWindow other;
    auto line = std::make_unique<app::StaticLine>(handle());
    HWND etched = ::GetWindow(line->handle(), GW_CHILD);
    REQUIRE(::SetParent(etched, other.handle()));
    line.reset();
    CHECK_FALSE(::IsWindow(etched));
}
