#include "win32/windows/window_place.h"

#include "win32/base/flavour.h"

namespace win32 {

namespace {

LONG width(const RECT& place) {
    return place.right - place.left;
}
LONG height(const RECT& place) {
    return place.bottom - place.top;
}

void change(HWND window, const RECT& place, UINT kept) {
    ::SetWindowPos(window, nullptr, place.left, place.top, width(place), height(place),
                   kept | SWP_NOZORDER | SWP_NOACTIVATE);
}

void reorder(HWND window, HWND after) {
    ::SetWindowPos(window, after, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

DWORD styleOf(HWND window, int kind) {
    return withFlavour([&](auto f) { return static_cast<DWORD>(f.getWindowLongPtr(window, kind)); });
}

}  // namespace

void moveTo(HWND window, int left, int top) {
    change(window, {left, top, left, top}, SWP_NOSIZE);
}

void resizeTo(HWND window, int width, int height) {
    change(window, {0, 0, width, height}, SWP_NOMOVE);
}

void placeAt(HWND window, const RECT& place) {
    change(window, place, 0);
}

void resizeInsideTo(HWND window, int insideWidth, int insideHeight) {
    RECT frame = {0, 0, insideWidth, insideHeight};
    ::AdjustWindowRectEx(&frame, styleOf(window, GWL_STYLE), ::GetMenu(window) != nullptr,
                         styleOf(window, GWL_EXSTYLE));
    resizeTo(window, width(frame), height(frame));
}

void centreOver(HWND window, HWND other) {
    RECT around, own;
    ::GetWindowRect(other, &around);
    ::GetWindowRect(window, &own);
    moveTo(window, (around.left + around.right - width(own)) / 2,
           (around.top + around.bottom - height(own)) / 2);
}

void putBehindSiblings(HWND window) {
    reorder(window, HWND_BOTTOM);
}

void putBeforeSiblings(HWND window) {
    reorder(window, HWND_TOP);
}

}  // namespace win32
