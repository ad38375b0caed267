#include "win32/scale.h"

#include "win32/system.h"

namespace win32 {

int systemDpi() {
    HDC screen = ::GetDC(nullptr);
    int dpi = ::GetDeviceCaps(screen, LOGPIXELSX);
    ::ReleaseDC(nullptr, screen);
    return dpi > 0 ? dpi : 96;
}

int dpiOf(HWND window) {
    using GetDpiForWindow = UINT(WINAPI*)(HWND);
    static auto getDpiForWindow = systemProcedure<GetDpiForWindow>(L"user32.dll", "GetDpiForWindow");
    UINT dpi = getDpiForWindow ? getDpiForWindow(window) : 0;
    return dpi ? static_cast<int>(dpi) : systemDpi();
}

}  // namespace win32
