#include "win32/windows/tab_page.h"

#include "win32/system/system.h"

namespace win32 {

namespace {

int bodyColour() {
    using IsThemeActive = BOOL(WINAPI*)();
    static auto isThemeActive = systemProcedure<IsThemeActive>(L"uxtheme.dll", "IsThemeActive");
    return isThemeActive && isThemeActive() ? COLOR_WINDOW : COLOR_BTNFACE;
}

}  // namespace

TabPage::TabPage(HWND parent, const wchar_t* controlName) {
    create(L"QuillonPage", controlName, WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT,
           parent, nullptr);
}

LRESULT TabPage::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const int colour = bodyColour();
    if (message == WM_ERASEBKGND) {
        RECT client;
        ::GetClientRect(handle(), &client);
        ::FillRect(reinterpret_cast<HDC>(wParam), &client, ::GetSysColorBrush(colour));
        return TRUE;
    }
    if (message == WM_CTLCOLORSTATIC) {
        ::SetBkColor(reinterpret_cast<HDC>(wParam), ::GetSysColor(colour));
        ::SetTextColor(reinterpret_cast<HDC>(wParam),
                       ::GetSysColor(colour == COLOR_WINDOW ? COLOR_WINDOWTEXT : COLOR_BTNTEXT));
        return reinterpret_cast<LRESULT>(::GetSysColorBrush(colour));
    }
    return Window::onMessage(message, wParam, lParam);
}

}  // namespace win32
