#include "app/FMain.h"

#include "app/backup.h"
#include "app/main_menu.h"
#include "app/start_up.h"
#include "app/tab_state.h"
#include "app/tools_menu.h"
#include "app/trap.h"
#include "build_settings.h"
#include "helmkit/client/logger.h"
#include "win32/system/system.h"
#include "win32/windows/key_releases.h"
#include "win32/windows/message_loop.h"
#include "win32/windows/scale.h"
#include "win32/windows/window_place.h"

namespace app {

namespace {

// Design measures in twips.
struct Size {
    int width, height;
};
const Size clientSize = {9600, 6900};
const Size stripMargin = {150, 450};  // inner size of the window less that of the strip
const Size pageMargin = {435, 975};   // width of the strip, inner height of the window, less those of a page
const int stripLeft = 75, stripTop = 60, pageLeft = 285, pageTop = 435;
const int footerLeft = 120, footerFromBottom = 300, footerWidth = 9000, footerHeight = 255;

enum MainControl : int { tsId = 200, lblFooterId = 201 };

}  // namespace

std::wstring programFolder() {
    return win32::moduleFolder(nullptr);
}

FMain::FMain(std::span<const PageRow> table) : table_(table) {
    // Errors that reach the border of a window procedure go to this window's log.
    win32::setWindowErrorSink([this](const win32::Error& error) {
        logger_.WriteLog(error.number, error.description, helmkit::caughtError, source(L".WindowProcedure"));
    });
    create(L"QuillonMain", {}, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, nullptr, createMainMenu());
    ts_.create(handle(), tsId);
    strip_ = {ts_.window(), stripLeft, stripTop, 0, 0};
    for (const PageRow& row : table_) {
        ts_.addTab(row.key, row.caption);
        auto page = row.make(handle());
        HWND window = page->window().handle();
        pages_.push_back({std::move(page), {window, pageLeft, pageTop, 0, 0}});
    }
    HWND label = win32::createControl(
        handle(), L"Static", L"The latest version of Quillon is always available at " + settings::homePage,
        WS_VISIBLE | SS_NOPREFIX, 0, lblFooterId);
    lblFooter_ = {label, footerLeft, 0, footerWidth, footerHeight};

    // The pages lie on the strip.
    win32::putBehindSiblings(ts_.window());
    adoptFont();
    const int dpi = win32::dpiOf(handle());
    win32::resizeInsideTo(handle(), win32::toPixels(clientSize.width, dpi),
                          win32::toPixels(clientSize.height, dpi));
}

FMain::~FMain() {
    win32::forgetDpi(handle());
    win32::setWindowErrorSink(nullptr);
}

bool FMain::Form_Initialize() {
    return initialize(logger_, programFolder(),
                      [this](const std::wstring& title) { win32::setText(handle(), title); });
}

void FMain::Form_Load() {
    trapped(logger_, L".Form_Load", [&] {
        writeBackup(logger_, programFolder());
        InitTabStrip();
        LogTabState();
    });
}

void FMain::InitTabStrip() {
    trapped(logger_, L".InitTabStrip", [&] {
        hasPlacedPages_ = true;
        Form_Resize();
        for (ShownPage& shown : pages_) shown.page->Init(logger_);
        currentPage_ = 1;
        ShowCurrentPage();
    });
}

void FMain::LogTabState() {
    trapped(logger_, L".LogTabState", [&] {
        for (size_t i = 0; i < pages_.size(); ++i) {
            if (table_[i].logTemplate) logRows(logger_, table_[i].logTemplate, pages_[i].page->rows());
        }
    });
}

void FMain::show() {
    ::ShowWindow(handle(), SW_SHOWNORMAL);
    ::UpdateWindow(handle());
}

void FMain::adoptFont() {
    // The controls go on drawing with the old font until they have the new one.
    win32::OwnedFont before = std::move(font_);
    const int dpi = win32::dpiOf(handle());
    font_ = win32::messageFont(dpi);
    ts_.adoptResolution(dpi);
    win32::setFont(handle(), font_.get());
}

int FMain::pageOfKey(const std::wstring& key) const {
    for (size_t i = 0; i < table_.size(); ++i) {
        if (key == table_[i].key) return static_cast<int>(i) + 1;
    }
    return 0;
}

void FMain::ShowCurrentPage() {
    int counter = 1;
    for (const ShownPage& shown : pages_) {
        ::ShowWindow(shown.window(), counter == currentPage_ ? SW_SHOW : SW_HIDE);
        ++counter;
    }
    // A hidden control would go on receiving the keys.
    if (HWND focus = ::GetFocus(); focus && ::IsChild(handle(), focus) && !::IsWindowVisible(focus)) {
        ::SetFocus(ts_.window());
    }
}

void FMain::ts_Click() {
    trapped(logger_, L".ts_Click", [&] {
        currentPage_ = pageOfKey(ts_.selectedKey());
        ShowCurrentPage();
    });
}

void FMain::Form_KeyUp(UINT key, unsigned modifiers) {
    trapped(logger_, L".Form_KeyUp", [&] {
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
    trapped(logger_, L".mnuRefresh_Click", [&] {
        for (ShownPage& shown : pages_) shown.page->RefreshList();
    });
}

// All heights first, then the label, then the widths. A size that comes out negative is skipped alone.
void FMain::Form_Resize() {
    if (!hasPlacedPages_ || ::IsIconic(handle())) return;
    const int dpi = win32::dpiOf(handle());
    RECT client;
    ::GetClientRect(handle(), &client);
    const int height = win32::toTwips(client.bottom, dpi), width = win32::toTwips(client.right, dpi);

    win32::PlacedControl& firstPage = pages_.front().place;
    strip_.setHeight(height - stripMargin.height);
    firstPage.setHeight(height - pageMargin.height);
    for (ShownPage& shown : pages_) shown.place.setHeight(firstPage.height());
    lblFooter_.setTop(height - footerFromBottom);
    strip_.setWidth(width - stripMargin.width);
    firstPage.setWidth(strip_.width() - pageMargin.width);
    for (ShownPage& shown : pages_) shown.place.setWidth(firstPage.width());

    strip_.apply(dpi);
    for (const ShownPage& shown : pages_) shown.place.apply(dpi);
    lblFooter_.apply(dpi);
    win32::redrawAll(handle());
}

void FMain::onResolutionChanged(int dpi, const RECT& place) {
    win32::keepDpi(handle(), dpi);
    adoptFont();
    win32::placeAt(handle(), place);
    Form_Resize();
    // A page whose size in pixels has stayed the same was not told to lay itself out again.
    for (const ShownPage& shown : pages_) {
        RECT client;
        ::GetClientRect(shown.window(), &client);
        win32::send(shown.window(), WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.right, client.bottom));
    }
}

void FMain::onCommand(UINT command) {
    switch (command) {
        case mnuRefresh:
            return mnuRefresh_Click();
        case mnuExit:
            ::DestroyWindow(handle());
            return;
        case mnuBackup:
            return mnuBackup_Click(handle(), logger_, programFolder());
        case mnuRestore:
            return mnuRestore_Click(handle(), logger_, programFolder());
        case mnuVisitWebsite:
            return mnuVisitWebsite_Click(logger_);
        case mnuAbout:
            return mnuAbout_Click(handle(), logger_);
    }
    if (command >= mnuTandem && command <= mnuTandem + 3) {
        mnuTandem_Click(handle(), logger_, command - mnuTandem);
    }
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
        case WM_SYSCOLORCHANGE:
            // Windows tells it to top-level windows only; the common controls keep their old colours without
            // it.
            for (const ShownPage& shown : pages_) win32::sendToAll(shown.window(), message);
            win32::sendToAll(ts_.window(), message);
            break;
        case WM_DESTROY:
            ::PostQuitMessage(0);
            return 0;
    }
    return Window::onMessage(message, wParam, lParam);
}

}  // namespace app
