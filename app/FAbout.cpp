#include "app/FAbout.h"

#include "build_settings.h"
#include "resources/resource_ids.h"
#include "win32/windows/message_loop.h"
#include "win32/windows/scale.h"
#include "win32/windows/window_place.h"

namespace app {

namespace {

// Design measures in twips.
const int clientWidth = 6000, clientHeight = 3450;
const int margin = 240, pictureSize = 960;

const wchar_t aboutText[] =
    L"Quillon Version 2.1\n\nCopyright \x00A9 2026 Mardelix. Quillon is free software under the MIT License. "
    L"It comes "
    L"without any warranty; back up your settings before you delete anything.";

}  // namespace

FAbout::FAbout(HWND owner, std::function<void()> visitHomePage)
    : owner_(owner), visitHomePage_(std::move(visitHomePage)) {
    create(L"QuillonAbout", L"About Quillon", WS_POPUP | WS_CAPTION | WS_SYSMENU, WS_EX_DLGMODALFRAME, owner,
           nullptr);
    createControls();
    layOut(win32::dpiOf(owner_));
    win32::centreOver(handle(), owner_);
}

void FAbout::createControls() {
    using win32::createControl;
    const int textLeft = 2 * margin + pictureSize, textWidth = clientWidth - textLeft - margin;
    image1_ = std::make_unique<win32::PictureBox>(handle(), RESOURCE_ABOUT_PICTURE);
    image1_->onDoubleClick(visitHomePage_);
    picture_ = {image1_->handle(), margin, margin, pictureSize, pictureSize};
    lblName_ = {createControl(handle(), L"Static", aboutText, WS_VISIBLE | SS_NOPREFIX, 0, 0), textLeft,
                margin, textWidth, 1500};
    lblVisitMardelix_ = {createControl(handle(), L"Static", L"Visit Mardelix: " + settings::homePage,
                                       WS_VISIBLE | SS_NOTIFY | SS_NOPREFIX, 0, 0),
                         textLeft, 1860, textWidth, 270};
    linkReleases_.listen(lblVisitMardelix_.window(), visitHomePage_);
    frame1_ = {createControl(handle(), L"Button", {}, WS_VISIBLE | BS_GROUPBOX, 0, 0), 120, 60,
               clientWidth - 240, 2220};
    line_ = std::make_unique<StaticLine>(handle());
    separator_ = {line_->handle(), 120, 2505, clientWidth - 240, 30};
    cmdOK_ = {createControl(handle(), L"Button", L"OK", WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON, 0, IDOK),
              clientWidth - 120 - 1335, 2760, 1335, 405};
    // Group boxes are drawn over what stands below them.
    win32::putBehindSiblings(frame1_.window());
}

void FAbout::layOut(int dpi) {
    win32::OwnedFont fontBefore = std::move(font_), linkFontBefore = std::move(linkFont_);
    font_ = win32::messageFont(dpi);
    linkFont_ = win32::underlinedVersionOf(font_.get());
    win32::setFont(handle(), font_.get());
    win32::setFont(lblVisitMardelix_.window(), linkFont_.get());
    for (const auto* control : {&picture_, &lblName_, &lblVisitMardelix_, &separator_, &frame1_, &cmdOK_}) {
        control->apply(dpi);
    }
    win32::resizeInsideTo(handle(), win32::toPixels(clientWidth, dpi), win32::toPixels(clientHeight, dpi));
    win32::redrawAll(handle());
}

void FAbout::showModal() {
    isOpen_ = true;
    ::EnableWindow(owner_, FALSE);
    ::ShowWindow(handle(), SW_SHOW);
    ::SetFocus(cmdOK_.window());
    win32::runMessageLoopWhile([this] { return isOpen_; },
                               [this](MSG& message) { return win32::isDialogKey(handle(), message); });
    // The owner first: the box's end would otherwise bring another program's window to the front.
    ::EnableWindow(owner_, TRUE);
    ::ShowWindow(handle(), SW_HIDE);
    ::SetActiveWindow(owner_);
}

void FAbout::cmdOK_Click() {
    isOpen_ = false;
}

LRESULT FAbout::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            // Escape comes as the Cancel command, Enter as that of the default button.
            if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) cmdOK_Click();
            return 0;
        case WM_CLOSE:
            cmdOK_Click();
            return 0;
        case win32::dpiChanged: {
            const auto& place = *reinterpret_cast<const RECT*>(lParam);
            win32::moveTo(handle(), place.left, place.top);
            layOut(HIWORD(wParam));
            return 0;
        }
        case WM_CTLCOLORSTATIC: {
            LRESULT brush = Window::onMessage(message, wParam, lParam);
            if (isLink(reinterpret_cast<HWND>(lParam))) {
                const COLORREF blue = RGB(0, 0, 238);
                ::SetTextColor(reinterpret_cast<HDC>(wParam),
                               win32::isHighContrast() ? ::GetSysColor(COLOR_HOTLIGHT) : blue);
            }
            return brush;
        }
        case WM_SETCURSOR:
            if (!isLink(reinterpret_cast<HWND>(wParam))) break;
            ::SetCursor(win32::handCursor());
            return TRUE;
    }
    return Window::onMessage(message, wParam, lParam);
}

}  // namespace app
