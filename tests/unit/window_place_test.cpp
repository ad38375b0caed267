#include "win32/windows/window_place.h"

#include <doctest/doctest.h>

#include "tests/support/page_fixture.h"

namespace {

using Place = std::vector<int>;

struct Placed {
    // Two windows of the desktop, one before the other, and two controls in the rear one.
    HiddenWindow rear, front;
    HWND first = win32::createControl(rear.handle(), L"Static", L"first", WS_VISIBLE, 0, 1);
    HWND second = win32::createControl(rear.handle(), L"Static", L"second", WS_VISIBLE, 0, 2);

    Placed() {
        ::SetWindowPos(rear.handle(), HWND_TOP, 20, 30, 240, 160, SWP_SHOWWINDOW);
        ::SetWindowPos(front.handle(), HWND_TOP, 100, 60, 300, 200, SWP_SHOWWINDOW);
        ::SetActiveWindow(front.handle());
        REQUIRE(::GetActiveWindow() == front.handle());
    }
    static Place placeOf(HWND window) {
        RECT r;
        ::GetWindowRect(window, &r);
        return {int(r.left), int(r.top), int(r.right - r.left), int(r.bottom - r.top)};
    }
    bool isFrontBefore() {
        for (HWND below = front.handle(); below; below = ::GetWindow(below, GW_HWNDNEXT)) {
            if (below == rear.handle()) return true;
        }
        return false;
    }
    void checkOrder() {
        CHECK(::GetActiveWindow() == front.handle());
        CHECK(isFrontBefore());
    }
};

}  // namespace

TEST_CASE_FIXTURE(Placed, "a window is moved, resized or both, and neither comes to the front") {
    win32::moveTo(rear.handle(), 41, 52);
    CHECK(placeOf(rear.handle()) == Place{41, 52, 240, 160});
    checkOrder();
    win32::resizeTo(rear.handle(), 251, 173);
    CHECK(placeOf(rear.handle()) == Place{41, 52, 251, 173});
    checkOrder();
    win32::placeAt(rear.handle(), {5, 6, 305, 406});
    CHECK(placeOf(rear.handle()) == Place{5, 6, 300, 400});
    checkOrder();
    win32::centreOver(rear.handle(), front.handle());
    CHECK(placeOf(rear.handle()) == Place{100, -40, 300, 400});
    checkOrder();
}

TEST_CASE_FIXTURE(Placed, "an inner size counts neither frame nor caption nor menu") {
    HWND window = front.handle();
    const HMENU menu = ::CreateMenu();
    ::AppendMenuW(menu, MF_STRING, 1, L"Row");
    for (HMENU shown : {HMENU{}, menu}) {
        ::SetMenu(window, shown);
        for (LONG style : {LONG(WS_OVERLAPPEDWINDOW), LONG(WS_POPUP | WS_CAPTION | WS_SYSMENU)}) {
            for (LONG extended : {0, int(WS_EX_DLGMODALFRAME), int(WS_EX_CLIENTEDGE)}) {
                ::SetWindowLongW(window, GWL_STYLE, style | WS_VISIBLE);
                ::SetWindowLongW(window, GWL_EXSTYLE, extended);
                ::SetWindowPos(window, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_FRAMECHANGED);
                win32::resizeInsideTo(window, 333, 222);
                RECT inside;
                ::GetClientRect(window, &inside);
                CHECK(Place{int(inside.right), int(inside.bottom)} == Place{333, 222});
            }
        }
    }
    ::SetMenu(window, nullptr);
    ::DestroyMenu(menu);
}

TEST_CASE_FIXTURE(Placed, "controls are put before and behind the others where they are") {
    ::SetWindowPos(first, HWND_TOP, 3, 4, 50, 20, 0);
    ::SetWindowPos(second, HWND_TOP, 5, 6, 60, 30, 0);
    REQUIRE(::GetWindow(rear.handle(), GW_CHILD) == second);
    const Place before = placeIn(rear.handle(), first);
    ::SetActiveWindow(front.handle());
    win32::putBeforeSiblings(first);
    CHECK(::GetWindow(rear.handle(), GW_CHILD) == first);
    CHECK(::GetActiveWindow() == front.handle());
    win32::putBehindSiblings(first);
    CHECK(::GetWindow(rear.handle(), GW_CHILD) == second);
    CHECK(placeIn(rear.handle(), first) == before);
    CHECK(::GetActiveWindow() == front.handle());
    win32::putBeforeSiblings(rear.handle());
    CHECK_FALSE(isFrontBefore());
    CHECK(::GetActiveWindow() == front.handle());
}
