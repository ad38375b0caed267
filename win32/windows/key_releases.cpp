#include "win32/windows/key_releases.h"

namespace win32 {

unsigned heldModifiers() {
    auto held = [](int key, unsigned modifier) { return ::GetKeyState(key) < 0 ? modifier : 0u; };
    return held(VK_SHIFT, shiftKey) | held(VK_CONTROL, controlKey) | held(VK_MENU, altKey);
}

void KeyReleases::listen(HWND control, Listener listener) {
    listener_ = std::move(listener);
    attach(control);
}

bool KeyReleases::handle(UINT message, WPARAM wParam, LPARAM) {
    if (isKeyRelease(message)) listener_(static_cast<UINT>(wParam), heldModifiers());
    // Alt+Enter would end in the default window procedure's beep.
    return message == WM_SYSCHAR && wParam == VK_RETURN;
}

}  // namespace win32
