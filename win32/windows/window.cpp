#include "win32/windows/window.h"

#include "win32/base/flavour.h"
#include "win32/base/structure_size.h"
#include "win32/windows/scale.h"

namespace win32 {

namespace {

std::function<void(const Error&)> errorSink;

void registerClass(const std::wstring& className, WNDPROC procedure) {
    withFlavour([&]<class F>(F f) {
        auto name = f.in(className);
        typename F::WindowClass windowClass = {};
        windowClass.style = CS_DBLCLKS;
        windowClass.lpfnWndProc = procedure;
        windowClass.hInstance = ::GetModuleHandleA(nullptr);
        windowClass.hIcon = static_cast<HICON>(
            f.loadImage(windowClass.hInstance, f.resource(1), IMAGE_ICON, 0, 0, LR_DEFAULTSIZE | LR_SHARED));
        windowClass.hCursor = f.loadCursor(nullptr, f.resource(32512));  // IDC_ARROW
        windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
        windowClass.lpszClassName = name;
        f.registerClass(&windowClass);  // fails when the class is there already, as it may
    });
}

}  // namespace

void reportCurrentError() noexcept {
    try {
        if (errorSink) errorSink(currentError());
    } catch (...) {
        // A sink that fails has nobody left to tell.
    }
}

void setWindowErrorSink(std::function<void(const Error&)> sink) {
    errorSink = std::move(sink);
}

std::wstring windowText(HWND window) {
    return withFlavour([&]<class F>(F f) {
        TextBuffer<F> buffer(f.getWindowTextLength(window) + 1);
        return buffer.text(f.getWindowText(window, buffer.data(), static_cast<int>(buffer.capacity())));
    });
}

void setText(HWND window, const std::wstring& text) {
    // An edit control of Windows 9x takes no text at all from 64 KB on.
    const size_t most = flavour() == Flavour::ansi ? 60000 / 2 : text.size();
    const std::wstring shown = text.substr(0, most);
    withFlavour([&](auto f) { f.setWindowText(window, f.in(shown)); });
}

LRESULT send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return withFlavour([&](auto f) { return f.sendMessage(window, message, wParam, lParam); });
}

HWND topLevelOf(HWND window) {
    while (HWND parent = ::GetParent(window)) window = parent;
    return window;
}

OwnedFont messageFont(int dpi) {
    return withFlavour([&]<class F>(F f) {
        typename F::NonClientMetrics metrics = {};
        metrics.cbSize = structureSize<typename F::NonClientMetrics>();
        f.systemParametersInfo(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
        metrics.lfMessageFont.lfHeight = ::MulDiv(metrics.lfMessageFont.lfHeight, dpi, systemDpi());
        return OwnedFont(f.createFontIndirect(&metrics.lfMessageFont));
    });
}

namespace {

template <class Change>
OwnedFont variantOf(HFONT font, Change change) {
    return withFlavour([&]<class F>(F f) {
        typename F::LogicalFont description = {};
        f.getObject(font, static_cast<int>(sizeof description), &description);
        change(description);
        return OwnedFont(f.createFontIndirect(&description));
    });
}

}  // namespace

OwnedFont boldVersionOf(HFONT font) {
    return variantOf(font, [](auto& description) { description.lfWeight = FW_BOLD; });
}

OwnedFont underlinedVersionOf(HFONT font) {
    return variantOf(font, [](auto& description) { description.lfUnderline = TRUE; });
}

bool isHighContrast() {
    return withFlavour([]<class F>(F f) {
        typename F::HighContrast setting = {};
        setting.cbSize = structureSize<typename F::HighContrast>();
        f.systemParametersInfo(SPI_GETHIGHCONTRAST, setting.cbSize, &setting, 0);
        return (setting.dwFlags & HCF_HIGHCONTRASTON) != 0;
    });
}

void sendToAll(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    send(window, message, wParam, lParam);
    for (HWND child = ::GetWindow(window, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
        sendToAll(child, message, wParam, lParam);
    }
}

void setFont(HWND window, HFONT font) {
    sendToAll(window, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

void redrawAll(HWND window) {
    ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

HWND createControl(HWND parent, const wchar_t* systemClass, const std::wstring& text, DWORD style,
                   DWORD extendedStyle, int id) {
    HWND control = withFlavour([&](auto f) {
        return f.createWindowEx(extendedStyle, f.in(systemClass), f.in(text), style | WS_CHILD, 0, 0, 0, 0,
                                parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                ::GetModuleHandleA(nullptr), static_cast<void*>(nullptr));
    });
    if (!control) raiseLastError(systemClass);
    return control;
}

Window::~Window() {
    if (handle_) ::DestroyWindow(handle_);
}

void Window::create(const wchar_t* className, const std::wstring& title, DWORD style, DWORD extendedStyle,
                    HWND parent, HMENU menuOrId) {
    registerClass(className, windowProcedure);
    withFlavour([&](auto f) {
        const int anywhere = (style & WS_CHILD) ? 0 : CW_USEDEFAULT;
        f.createWindowEx(extendedStyle, f.in(className), f.in(title), style, anywhere, anywhere, anywhere,
                         anywhere, parent, menuOrId, ::GetModuleHandleA(nullptr), static_cast<void*>(this));
    });
    if (!handle_) raiseLastError(className);
}

LRESULT Window::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return withFlavour([&](auto f) { return f.defWindowProc(handle_, message, wParam, lParam); });
}

LRESULT CALLBACK Window::windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return withFlavour([&](auto f) -> LRESULT {
        if (message == WM_NCCREATE) {
            auto* creation = reinterpret_cast<CREATESTRUCTW*>(lParam);  // both flavours have this layout
            auto* created = static_cast<Window*>(creation->lpCreateParams);
            created->handle_ = window;
            f.setWindowLongPtr(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
        }
        auto* self = reinterpret_cast<Window*>(f.getWindowLongPtr(window, GWLP_USERDATA));
        if (!self) return f.defWindowProc(window, message, wParam, lParam);
        LRESULT result = 0;
        try {
            result = self->onMessage(message, wParam, lParam);
        } catch (...) {
            reportCurrentError();
        }
        if (message == WM_NCDESTROY) {
            f.setWindowLongPtr(window, GWLP_USERDATA, LONG_PTR{0});
            self->handle_ = nullptr;
        }
        return result;
    });
}

HCURSOR handCursor() {
    return withFlavour([](auto f) {
        HCURSOR hand = f.loadCursor(nullptr, f.resource(32649));        // IDC_HAND
        return hand ? hand : f.loadCursor(nullptr, f.resource(32512));  // IDC_ARROW
    });
}

WaitCursor::WaitCursor()
    : before_(::SetCursor(withFlavour([](auto f) { return f.loadCursor(nullptr, f.resource(32514)); }))) {
}  // IDC_WAIT

WaitCursor::~WaitCursor() {
    ::SetCursor(before_);
}

}  // namespace win32
