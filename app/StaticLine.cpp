#include "app/StaticLine.h"

namespace app {

StaticLine::StaticLine(HWND parent) {
    create(L"QuillonStaticLine", {}, WS_CHILD | WS_VISIBLE, 0, parent, nullptr);
    line_ = win32::createControl(handle(), L"Static", L"StaticLine", WS_VISIBLE | SS_ETCHEDHORZ,
                                 WS_EX_STATICEDGE | WS_EX_NOPARENTNOTIFY, 0);
}

StaticLine::~StaticLine() {
    ::DestroyWindow(line_);
}

LRESULT StaticLine::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_SIZE) return Window::onMessage(message, wParam, lParam);
    ::MoveWindow(line_, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
    return 0;
}

}  // namespace app
