#include "app/FMain.h"

#include "app/main_menu.h"
#include "build_settings.h"
#include "startup/ucOther.h"
#include "startup/ucRun.h"
#include "startup/ucServices.h"
#include "startup/ucWinlogon.h"
#include "win32/system/system.h"
#include "win32/windows/key_releases.h"
#include "win32/windows/message_loop.h"
#include "win32/windows/scale.h"

namespace app {

namespace {

// Design measures in twips.
const int clientWidth = 9600, clientHeight = 6900;
const int stripLeft = 75, stripTop = 60;
const int footerLeft = 120, footerWidth = 9000, footerHeight = 255;

enum MainControl : int { tsId = 200, lblFooterId = 201 };

const wchar_t* const tabs[][2] = {
    {L"help", L"Help"},
    {L"Run", L"General Startup Programs"},
    {L"Winlogon", L"Winlogon Startup Programs"},
    {L"Other", L"Custom Startup Programs"},
    {L"Services", L"Services"},
};

// Errors that reach the border of a window procedure go to the log of the window that stands.
const helmkit::Logger* logOfWindowErrors = nullptr;

void logWindowError(const win32::Error& error) {
    try {
        if (logOfWindowErrors) {
            logOfWindowErrors->WriteLog(error.number, error.description, helmkit::caughtError,
                                        L"FMain.WindowProcedure");
        }
    } catch (...) {
        // There is nobody left to tell.
    }
}

}  // namespace

std::wstring programFolder() {
    return win32::moduleFolder(nullptr);
}

FMain::FMain() {
    logOfWindowErrors = &logger_;
    win32::setWindowErrorSink(logWindowError);
    create(L"QuillonMain", {}, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, nullptr, createMainMenu());
    ts_.create(handle(), tsId);
    for (const auto& tab : tabs) ts_.addTab(tab[0], tab[1]);
    strip_ = {ts_.window(), stripLeft, stripTop, 0, 0};

    ucHelp1_ = std::make_unique<support::ucHelp>(handle());
    startupPages_.push_back(std::make_unique<startup::ucRun>(handle()));
    startupPages_.push_back(std::make_unique<startup::ucWinlogon>(handle()));
    startupPages_.push_back(std::make_unique<startup::ucOther>(handle()));
    startupPages_.push_back(std::make_unique<startup::ucServices>(handle()));

    HWND footer = win32::createControl(
        handle(), L"Static", L"The latest version of Quillon is always available at " + settings::homePage,
        WS_VISIBLE | SS_NOPREFIX, 0, lblFooterId);
    lblFooter_ = {footer, footerLeft, 0, footerWidth, footerHeight};

    // The pages lie on the strip.
    ::SetWindowPos(ts_.window(), HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    adoptFont();
    const int dpi = win32::dpiOf(handle());
    RECT frame = {0, 0, win32::toPixels(clientWidth, dpi), win32::toPixels(clientHeight, dpi)};
    ::AdjustWindowRect(&frame, WS_OVERLAPPEDWINDOW, TRUE);
    ::SetWindowPos(handle(), nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                   SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

FMain::~FMain() {
    win32::forgetDpi(handle());
    win32::setWindowErrorSink(nullptr);
    logOfWindowErrors = nullptr;
}

void FMain::show() {
    ::ShowWindow(handle(), SW_SHOWNORMAL);
    ::UpdateWindow(handle());
}

void FMain::adoptFont() {
    // The controls go on drawing with the old font until they have the new one.
    win32::OwnedFont before = std::move(font_);
    font_ = win32::messageFont(win32::dpiOf(handle()));
    win32::setFont(handle(), font_.get());
}

int FMain::pageOfKey(const std::wstring& key) const {
    for (size_t i = 0; i < pages_.size(); ++i) {
        if (key == pages_[i].key) return static_cast<int>(i) + 1;
    }
    return 0;
}

void FMain::ShowCurrentPage() {
    int counter = 1;
    for (const Page& page : pages_) {
        ::ShowWindow(page.window->handle(), counter == currentPage_ ? SW_SHOW : SW_HIDE);
        ++counter;
    }
    // A hidden control would go on receiving the keys.
    if (HWND focus = ::GetFocus(); focus && ::IsChild(handle(), focus) && !::IsWindowVisible(focus)) {
        ::SetFocus(ts_.window());
    }
}

void FMain::ts_Click() {
    trapped(L".ts_Click", [&] {
        currentPage_ = pageOfKey(ts_.selectedKey());
        ShowCurrentPage();
    });
}

void FMain::Form_KeyUp(UINT key, unsigned modifiers) {
    trapped(L".Form_KeyUp", [&] {
        if (key == VK_F5 && modifiers == 0) return mnuRefresh_Click();
        if (key != VK_TAB || !(modifiers & win32::controlKey)) return;
        const int last = static_cast<int>(pages_.size());
        currentPage_ += (modifiers & win32::shiftKey) ? -1 : 1;
        if (currentPage_ < 1) currentPage_ = last;
        if (currentPage_ > last) currentPage_ = 1;
        ts_.select(currentPage_);
        ShowCurrentPage();
    });
}

void FMain::mnuRefresh_Click() {
    trapped(L".mnuRefresh_Click", [&] {
        for (auto& page : startupPages_) page->RefreshList();
    });
}

// All heights first, then the label, then the widths. A size that comes out negative is skipped alone.
void FMain::Form_Resize() {
    if (pages_.empty() || ::IsIconic(handle())) return;
    const int dpi = win32::dpiOf(handle());
    RECT client;
    ::GetClientRect(handle(), &client);
    const int height = win32::toTwips(client.bottom, dpi), width = win32::toTwips(client.right, dpi);

    auto& helpPage = pages_.front().place;
    strip_.setHeight(height - 450);
    helpPage.setHeight(height - 975);
    for (Page& page : pages_) page.place.setHeight(helpPage.height());
    lblFooter_.setTop(height - 300);
    strip_.setWidth(width - 150);
    helpPage.setWidth(strip_.width() - 435);
    for (Page& page : pages_) page.place.setWidth(helpPage.width());

    strip_.apply(dpi);
    for (const Page& page : pages_) page.place.apply(dpi);
    lblFooter_.apply(dpi);
}

void FMain::onResolutionChanged(int dpi, const RECT& place) {
    win32::keepDpi(handle(), dpi);
    adoptFont();
    ::SetWindowPos(handle(), nullptr, place.left, place.top, place.right - place.left,
                   place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
    Form_Resize();
    // A page whose size in pixels has stayed the same was not told to lay itself out again.
    for (const Page& page : pages_) {
        RECT client;
        ::GetClientRect(page.window->handle(), &client);
        win32::send(page.window->handle(), WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.right, client.bottom));
    }
    ::InvalidateRect(handle(), nullptr, TRUE);
}

void FMain::onCommand(UINT command) {
    switch (command) {
        case mnuRefresh:
            return mnuRefresh_Click();
        case mnuExit:
            ::DestroyWindow(handle());
            return;
        case mnuBackup:
            return mnuBackup_Click();
        case mnuRestore:
            return mnuRestore_Click();
        case mnuVisitWebsite:
            return mnuVisitWebsite_Click();
        case mnuAbout:
            return mnuAbout_Click();
    }
    if (command >= mnuTandem && command <= mnuTandem + 3) mnuTandem_Click(command - mnuTandem);
}

bool FMain::preview(MSG& message) {
    bool isOurs = message.hwnd == handle() || ::IsChild(handle(), message.hwnd);
    if (isOurs && win32::isKeyRelease(message.message)) {
        Form_KeyUp(static_cast<UINT>(message.wParam), win32::heldModifiers());
    }
    // Ctrl+Tab changes pages when it is released; as a dialog key it would also move the focus.
    bool isCtrlTab =
        message.message == WM_KEYDOWN && message.wParam == VK_TAB && ::GetKeyState(VK_CONTROL) < 0;
    return !isCtrlTab && win32::isDialogKey(handle(), message);
}

LRESULT FMain::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE:
            Form_Resize();
            return 0;
        case WM_COMMAND:
            if (lParam == 0) onCommand(LOWORD(wParam));
            return 0;
        case WM_NOTIFY: {
            const auto& notification = *reinterpret_cast<const NMHDR*>(lParam);
            if (notification.idFrom == tsId && notification.code == static_cast<UINT>(TCN_SELCHANGE))
                ts_Click();
            return 0;
        }
        case WM_ACTIVATE:
            if (LOWORD(wParam) == WA_INACTIVE) lastFocus_ = ::GetFocus();
            break;
        case WM_SETFOCUS:
            ::SetFocus(lastFocus_ && ::IsWindowVisible(lastFocus_) ? lastFocus_ : ts_.window());
            return 0;
        case win32::dpiChanged:
            onResolutionChanged(HIWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
            return 0;
        case WM_DESTROY:
            ::PostQuitMessage(0);
            return 0;
    }
    return Window::onMessage(message, wParam, lParam);
}

}  // namespace app
