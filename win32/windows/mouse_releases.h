// The releases of the left mouse button over a system control.
#pragma once

#include <functional>

#include "win32/windows/message_filter.h"

namespace win32 {

class MouseReleases : private MessageFilter {
  public:
    using Listener = std::function<void()>;
    void listen(HWND control, Listener listener) {
        listener_ = std::move(listener);
        attach(control);
    }

  private:
    bool handle(UINT message, WPARAM, LPARAM) override {
        if (message == WM_LBUTTONUP) listener_();
        return false;
    }

    Listener listener_;
};

}  // namespace win32
