// What is painted when the main window changes its size: no window twice, and nothing under another one.
#include <doctest/doctest.h>

#include <map>

#include "app/FMain.h"
#include "tests/support/page_fixture.h"
#include "tests/support/started_window.h"

namespace {

const int steps = 10;

// How often a window was told to erase itself, and what of that lay under the windows inside it.
struct Erased {
    int times = 0;
    int coveredPixels = 0;
};

std::map<HWND, WNDPROC> procedures;
std::map<HWND, Erased> erased;

// Of the pixels in the middle of each child, which the child alone is to paint, those that the canvas
// reaches.
int coveredPixels(HWND window, HDC canvas) {
    int covered = 0;
    for (HWND child = ::GetWindow(window, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
        RECT place;
        if (!::IsWindowVisible(child) || !::GetWindowRect(child, &place)) continue;
        ::MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
        covered += ::PtVisible(canvas, (place.left + place.right) / 2, (place.top + place.bottom) / 2);
    }
    return covered;
}

LRESULT CALLBACK counting(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    HDC canvas = reinterpret_cast<HDC>(wParam);
    // A tab strip with a theme has the window below it drawn into its own canvas, too.
    if (message == WM_ERASEBKGND && ::WindowFromDC(canvas) == window) {
        ++erased[window].times;
        erased[window].coveredPixels += coveredPixels(window, canvas);
    }
    return ::CallWindowProcW(procedures.at(window), window, message, wParam, lParam);
}

void watch(HWND window) {
    procedures[window] = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(counting)));
    for (HWND child = ::GetWindow(window, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
        watch(child);
    }
}

void unwatchAll() {
    for (auto [window, procedure] : procedures) {
        ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
    }
    procedures.clear();
    erased.clear();
}

void paint() {
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) ::DispatchMessageW(&message);
}

std::wstring nameOf(HWND window) {
    wchar_t name[100] = {};
    ::GetClassNameW(window, name, 100);
    return name + (L" " + win32::windowText(window));
}

// The common controls of Wine erase themselves at once when they get a new size, and again when they are
// painted with the rest; so does the main window, which Windows itself sizes.
bool isOurs(HWND window) {
    const std::wstring name = nameOf(window);
    return name.rfind(L"QuillonPage", 0) == 0 || name.rfind(L"QuillonPicture", 0) == 0 ||
           name.rfind(L"Static", 0) == 0 || name.rfind(L"Button", 0) == 0;
}

struct Flicker : PageFixture {
    app::FMain window;

    Flicker() {
        startWindow(window, desktop);
        window.show();
        paint();
        watch(window.handle());
    }
    ~Flicker() {
        unwatchAll();
        ::ShowWindow(window.handle(), SW_HIDE);
    }
    void choose(int tab) {
        HWND strip = ::GetDlgItem(window.handle(), 200);
        ::SendMessageW(strip, TCM_SETCURSEL, tab, 0);
        NMHDR changed = {strip, 200, static_cast<UINT>(TCN_SELCHANGE)};
        ::SendMessageW(window.handle(), WM_NOTIFY, 200, reinterpret_cast<LPARAM>(&changed));
        paint();
    }
};

}  // namespace

TEST_CASE_FIXTURE(
    Flicker,
    "a new size erases each window once or as rarely as can be, and never what another window paints") {
    for (int tab = 0; tab < 5; ++tab) {
        choose(tab);
        erased.clear();
        for (int step = 1; step <= steps; ++step) {
            ::SetWindowPos(window.handle(), nullptr, 0, 0, 640 + 3 * step, 460 + 2 * step,
                           SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
            paint();
        }
        for (const auto& [watched, procedure] : procedures) {
            if (!::IsWindowVisible(watched) || !isOurs(watched)) continue;
            CAPTURE(nameOf(watched));
            CHECK(erased[watched].times >= steps);
        }
        CHECK(erased[window.handle()].times > 0);
        for (const auto& [erasedWindow, count] : erased) {
            CAPTURE(tab);
            CAPTURE(nameOf(erasedWindow));
            CHECK(count.times <= steps * (isOurs(erasedWindow) ? 1 : 2) + 2);
            CHECK(count.coveredPixels == 0);
        }
    }
}
