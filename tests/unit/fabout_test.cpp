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
    CHECK(win32::windowText(child(L"Quillon")).find(L"Quillon Version 2.1\n\n") == 0);
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
