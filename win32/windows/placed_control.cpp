#include "win32/windows/placed_control.h"

#include "win32/windows/scale.h"

namespace win32 {

void PlacedControl::apply(int dpi) const {
    ::MoveWindow(window_, toPixels(left_, dpi), toPixels(top_, dpi), toPixels(width_, dpi),
                 toPixels(height_, dpi), FALSE);
}

}  // namespace win32
