// The bold red values of changed places, by the list view's custom draw.
#pragma once

#include "win32/base/handle.h"
#include "win32/windows/list_view.h"

namespace startup {

class ValueEmphasis {
  public:
    // Answers a custom-draw notification of the list: the second column of rows with the picture `image` is
    // bold and, unless the user has asked for high contrast, red. While the list has the keyboard focus, the
    // colour of the selected row is the system's.
    LRESULT onCustomDraw(const win32::ListView& list, const NMHDR& notification, int image);

  private:
    HFONT boldFontFor(HDC context);

    win32::OwnedFont bold_;
    HFONT boldOf_ = nullptr;  // the font that bold_ was made from
};

}  // namespace startup
