// Lengths on forms are in twips, 1/1440 inch; windows are placed in pixels of the monitor they are on.
#pragma once

#include "win32/base/platform.h"

namespace win32 {

// WM_DPICHANGED, Windows 8.1 and later: the new resolution in both words of wParam, in lParam the rectangle
// that the window is to take.
constexpr UINT dpiChanged = 0x02E0;

// Pixels per inch of the monitor that the window is on (Windows 8.1 on), or of the screen on older systems.
// Of a window that has been told its resolution, and of everything in it, that one.
int dpiOf(HWND window);
// Keeps what a top-level window was told by dpiChanged, until it is forgotten.
void keepDpi(HWND topLevel, int dpi);
void forgetDpi(HWND topLevel);
// Pixels per inch that the system's own measures, such as font heights, are given in.
int systemDpi();

inline int toPixels(int twips, int dpi) {
    return ::MulDiv(twips, dpi, 1440);
}
inline int toTwips(int pixels, int dpi) {
    return ::MulDiv(pixels, 1440, dpi);
}

}  // namespace win32
