// The about box.
#pragma once

#include <functional>
#include <memory>

#include "app/StaticLine.h"
#include "win32/windows/mouse_releases.h"
#include "win32/windows/picture_box.h"
#include "win32/windows/placed_control.h"
#include "win32/windows/window.h"

namespace app {

class FAbout : public win32::Window {
  public:
    // `visitHomePage` runs on a double-click of the picture and on a click of the link.
    FAbout(HWND owner, std::function<void()> visitHomePage);

    // Shows the box over its owner, which gets no input meanwhile, until it is closed.
    void showModal();

  protected:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void createControls();
    void layOut(int dpi);
    void cmdOK_Click();
    bool isLink(HWND window) const { return window == lblVisitMardelix_.window(); }

    HWND owner_;
    std::function<void()> visitHomePage_;
    bool isOpen_ = false;
    std::unique_ptr<win32::PictureBox> image1_;
    std::unique_ptr<StaticLine> line_;
    win32::MouseReleases linkReleases_;
    win32::PlacedControl picture_, lblName_, lblVisitMardelix_, separator_, frame1_, cmdOK_;
    win32::OwnedFont font_, linkFont_;
};

}  // namespace app
