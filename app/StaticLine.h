// An etched horizontal line.
#pragma once

#include "win32/windows/window.h"

namespace app {

// Hosts a window of the system class "Static", which fills it.
class StaticLine : public win32::Window {
  public:
    explicit StaticLine(HWND parent);
    ~StaticLine() override;

  protected:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    HWND line_ = nullptr;
};

}  // namespace app
