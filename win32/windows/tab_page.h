// A page on a tab strip.
#pragma once

#include "win32/windows/window.h"

namespace win32 {

// Has the colour that the body of a tab strip has: that of a window where visual themes are in force (Windows
// XP on), that of a button elsewhere. Keys reach the controls of the page through its parent's dialog keys.
class TabPage : public Window {
  protected:
    // Makes the page, hidden, as a child of `parent`; its window text is the name of the control.
    TabPage(HWND parent, const wchar_t* controlName);

    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
};

}  // namespace win32
