// A child window that shows a picture.
#pragma once

#include <functional>

#include "win32/window.h"

namespace win32 {

// The picture exists in three sizes, for 96, 144 and 192 pixels per inch, as bitmap resources of consecutive
// numbers. The smallest that is not smaller than the window is drawn, scaled where their sizes differ.
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
