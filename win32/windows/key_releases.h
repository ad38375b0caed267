// The releases of keys in a system control.
#pragma once

#include <functional>

#include "win32/windows/message_filter.h"

namespace win32 {

// Modifiers held at the release of a key.
enum Modifier : unsigned { shiftKey = 1, controlKey = 2, altKey = 4 };
unsigned heldModifiers();

// With Alt held, releases arrive as system key-ups; both kinds are told alike.
inline bool isKeyRelease(UINT message) {
    return message == WM_KEYUP || message == WM_SYSKEYUP;
}

class KeyReleases : private MessageFilter {
  public:
    using Listener = std::function<void(UINT key, unsigned modifiers)>;
    void listen(HWND control, Listener listener);

  private:
    bool handle(UINT message, WPARAM wParam, LPARAM lParam) override;

    Listener listener_;
};

}  // namespace win32
