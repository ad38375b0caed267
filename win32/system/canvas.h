// A bitmap with a device context to draw with or from it.
#pragma once

#include "win32/base/platform.h"

namespace win32 {

// The context, compatible with the screen, is the canvas's own; the bitmap belongs to the caller and outlives
// it.
class Canvas {
  public:
    explicit Canvas(HBITMAP bitmap)
        : context_(::CreateCompatibleDC(nullptr)), before_(::SelectObject(context_, bitmap)) {}
    ~Canvas() {
        ::SelectObject(context_, before_);
        ::DeleteDC(context_);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    HDC context() const { return context_; }

  private:
    HDC context_;
    HGDIOBJ before_;
};

}  // namespace win32
