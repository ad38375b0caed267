// A child window that shows a picture.
#pragma once

#include <functional>

#include "win32/windows/window.h"

namespace win32 {

// Pictures have 32 bits a pixel, colours premultiplied by their alpha; they are blended with the colour that
// the parent has behind static controls. A picture exists in three sizes, for 96, 144 and 192 pixels per
// inch, as bitmap resources of consecutive numbers. The smallest that is not smaller than the window is
// drawn, scaled where their sizes differ.
class PictureBox : public Window {
  public:
    PictureBox(HWND parent, int firstResource);

    void onDoubleClick(std::function<void()> action) { doubleClick_ = std::move(action); }

  protected:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void paint() const;

    int firstResource_;
    std::function<void()> doubleClick_;
};

}  // namespace win32
