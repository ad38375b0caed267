#include "win32/windows/message_filter.h"

#include <map>

#include "win32/base/flavour.h"
#include "win32/windows/window.h"

namespace win32 {

namespace {

// The filters by their controls; everything runs on the one user-interface thread.
std::map<HWND, MessageFilter*>& filters() {
    static std::map<HWND, MessageFilter*> byControl;
    return byControl;
}

}  // namespace

void MessageFilter::attach(HWND control) {
    control_ = control;
    filters()[control] = this;
    original_ = withFlavour([&](auto f) {
        return reinterpret_cast<WNDPROC>(
            f.setWindowLongPtr(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&filterProcedure)));
    });
}

MessageFilter::~MessageFilter() {
    if (!control_) return;
    withFlavour(
        [&](auto f) { f.setWindowLongPtr(control_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(original_)); });
    filters().erase(control_);
}

LRESULT CALLBACK MessageFilter::filterProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto found = filters().find(window);
    if (found == filters().end()) return 0;
    MessageFilter* self = found->second;
    WNDPROC original = self->original_;
    bool kept = false;
    try {
        if (message == WM_NCDESTROY) {
            filters().erase(found);
            self->control_ = nullptr;
        } else {
            kept = self->handle(message, wParam, lParam);
        }
    } catch (...) {
        reportCurrentError();
    }
    if (kept) return 0;
    return withFlavour([&](auto f) { return f.callWindowProc(original, window, message, wParam, lParam); });
}

}  // namespace win32
