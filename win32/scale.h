// Lengths on forms are in twips, 1/1440 inch; windows are placed in pixels of the monitor they are on.
#pragma once

#include "win32/platform.h"

namespace win32 {

// Pixels per inch of the window's monitor (Windows 10), or of the screen on older systems.
int dpiOf(HWND window);
// Pixels per inch that the system's own measures, such as font heights, are given in.
int systemDpi();

inline int toPixels(int twips, int dpi) {
    return ::MulDiv(twips, dpi, 1440);
}
inline int toTwips(int pixels, int dpi) {
    return ::MulDiv(pixels, 1440, dpi);
}

}  // namespace win32
