// Listening to the messages of a system control.
#pragma once

#include "win32/base/platform.h"

namespace win32 {

// Listens to a control's messages before the control does. `handle` returns true to keep one from the
// control.
class MessageFilter {
  public:
    MessageFilter() = default;
    MessageFilter(const MessageFilter&) = delete;
    MessageFilter& operator=(const MessageFilter&) = delete;
    virtual ~MessageFilter();

  protected:
    void attach(HWND control);
    virtual bool handle(UINT message, WPARAM wParam, LPARAM lParam) = 0;

  private:
    static LRESULT CALLBACK filterProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND control_ = nullptr;
    WNDPROC original_ = nullptr;
};

}  // namespace win32
