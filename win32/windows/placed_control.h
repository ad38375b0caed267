// A control with its place, in twips, as a form's layout rules set it.
#pragma once

#include "win32/base/platform.h"

namespace win32 {

// Each measure is set by itself. A negative width or height is not applied: the control keeps the one it has,
// and the other measures change all the same.
class PlacedControl {
  public:
    PlacedControl() = default;
    PlacedControl(HWND window, int left, int top, int width, int height)
        : window_(window), left_(left), top_(top), width_(width), height_(height) {}

    HWND window() const { return window_; }
    int left() const { return left_; }
    int top() const { return top_; }
    int width() const { return width_; }
    int height() const { return height_; }

    void setLeft(int twips) { left_ = twips; }
    void setTop(int twips) { top_ = twips; }
    void setWidth(int twips) {
        if (twips >= 0) width_ = twips;
    }
    void setHeight(int twips) {
        if (twips >= 0) height_ = twips;
    }

    // Moves the window to its place, at a resolution in pixels per inch. Nothing is painted: the layout of a
    // top-level window ends with redrawAll, so that each control is erased and painted once.
    void apply(int dpi) const;

  private:
    HWND window_ = nullptr;
    int left_ = 0, top_ = 0, width_ = 0, height_ = 0;
};

}  // namespace win32
