// Each of these changes what its name says and nothing else: neither what stands in front nor what is active.
// Measures are in pixels.
#pragma once

#include "win32/base/platform.h"

namespace win32 {

void moveTo(HWND window, int left, int top);
void resizeTo(HWND window, int width, int height);
void placeAt(HWND window, const RECT& place);
// Gives the inside of a top-level window that size; its frame and a menu of one line come around it.
void resizeInsideTo(HWND window, int width, int height);
void centreOver(HWND window, HWND other);
void putBehindSiblings(HWND window);
void putBeforeSiblings(HWND window);

}  // namespace win32
