// The help page: a picture and what the program is.
#pragma once

#include "helmkit/client/logger.h"
#include "win32/windows/picture_box.h"
#include "win32/windows/placed_control.h"
#include "win32/windows/tab_page.h"

namespace support {

class ucHelp : public win32::TabPage {
  public:
    // Makes the page, hidden, as a child of `parent`.
    explicit ucHelp(HWND parent);

    // Keeps the logger and shows the description from the string table.
    void Init(helmkit::Logger& log);

  protected:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void UserControl_Resize(int width, int height);

    helmkit::Logger log_;
    win32::PictureBox image1_;
    win32::PlacedControl picture_, lblDescr_;
};

}  // namespace support
