#include "win32/windows/scale.h"

#include <map>

#include "win32/system/system.h"
#include "win32/windows/window.h"

namespace win32 {

namespace {

// What windows were told; everything runs on the one user-interface thread.
std::map<HWND, int>& toldResolutions() {
    static std::map<HWND, int> resolutions;
    return resolutions;
}

// Windows 10, from its edition 1607.
int askedOfWindow(HWND window) {
    using GetDpiForWindow = UINT(WINAPI*)(HWND);
    static const auto getDpiForWindow = systemProcedure<GetDpiForWindow>(L"user32.dll", "GetDpiForWindow");
    return getDpiForWindow ? static_cast<int>(getDpiForWindow(window)) : 0;
}

// Windows 8.1 and the first editions of 10.
int askedOfMonitor(HWND window) {
    using MonitorFromWindow = HMONITOR(WINAPI*)(HWND, DWORD);
    using GetDpiForMonitor = HRESULT(WINAPI*)(HMONITOR, int, UINT*, UINT*);
    static const auto getDpiForMonitor = systemProcedure<GetDpiForMonitor>(L"shcore.dll", "GetDpiForMonitor");
    static const auto monitorFromWindow =
        systemProcedure<MonitorFromWindow>(L"user32.dll", "MonitorFromWindow");
    if (!getDpiForMonitor || !monitorFromWindow) return 0;
    const DWORD nearest = 2;
    const int effective = 0;
    UINT x = 0, y = 0;
    HRESULT answer = getDpiForMonitor(monitorFromWindow(window, nearest), effective, &x, &y);
    return SUCCEEDED(answer) ? static_cast<int>(x) : 0;
}

}  // namespace

int systemDpi() {
    HDC screen = ::GetDC(nullptr);
    int dpi = ::GetDeviceCaps(screen, LOGPIXELSX);
    ::ReleaseDC(nullptr, screen);
    return dpi > 0 ? dpi : 96;
}

int dpiOf(HWND window) {
    if (auto told = toldResolutions().find(topLevelOf(window)); told != toldResolutions().end()) {
        return told->second;
    }
    int dpi = askedOfWindow(window);
    if (!dpi) dpi = askedOfMonitor(window);
    return dpi ? dpi : systemDpi();
}

void keepDpi(HWND topLevel, int dpi) {
    toldResolutions()[topLevel] = dpi;
}

void forgetDpi(HWND topLevel) {
    toldResolutions().erase(topLevel);
}

}  // namespace win32
