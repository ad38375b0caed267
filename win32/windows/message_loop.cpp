#include "win32/windows/message_loop.h"

#include "win32/base/flavour.h"

namespace win32 {

int runMessageLoop(const std::function<bool(MSG&)>& preview) {
    return withFlavour([&](auto f) {
        MSG message;
        while (f.getMessage(&message, nullptr, 0u, 0u) > 0) {
            if (preview(message)) continue;
            ::TranslateMessage(&message);
            f.dispatchMessage(&message);
        }
        return static_cast<int>(message.wParam);
    });
}

void runMessageLoopWhile(const std::function<bool()>& condition, const std::function<bool(MSG&)>& preview) {
    withFlavour([&](auto f) {
        MSG message;
        while (condition()) {
            if (f.getMessage(&message, nullptr, 0u, 0u) <= 0) {
                ::PostQuitMessage(static_cast<int>(message.wParam));
                return;
            }
            if (preview(message)) continue;
            ::TranslateMessage(&message);
            f.dispatchMessage(&message);
        }
    });
}

void runPendingMessages() {
    withFlavour([](auto f) {
        MSG message;
        while (f.peekMessage(&message, nullptr, 0u, 0u, UINT{PM_REMOVE})) {
            if (message.message == WM_QUIT) {
                ::PostQuitMessage(static_cast<int>(message.wParam));
                return;
            }
            ::TranslateMessage(&message);
            f.dispatchMessage(&message);
        }
    });
}

bool isDialogKey(HWND window, MSG& message) {
    return withFlavour([&](auto f) { return f.isDialogMessage(window, &message) != FALSE; });
}

}  // namespace win32
