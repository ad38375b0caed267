#include "support/ucHelp.h"

#include "resources/resource_ids.h"
#include "win32/system/resources.h"
#include "win32/windows/scale.h"

namespace support {

namespace {

// Design measures in twips: the label stands right of the picture.
const int pictureLeft = 240, pictureTop = 240, pictureSize = 960;
const int labelLeft = 1500, labelTop = 240;

enum HelpControl : int { lblDescrId = 101 };

}  // namespace

ucHelp::ucHelp(HWND parent) : TabPage(parent, L"ucHelp1"), image1_(handle(), RESOURCE_HELP_PICTURE) {
    picture_ = {image1_.handle(), pictureLeft, pictureTop, pictureSize, pictureSize};
    HWND label = win32::createControl(handle(), L"Static", {}, WS_VISIBLE | SS_NOPREFIX, 0, lblDescrId);
    lblDescr_ = {label, labelLeft, labelTop, 0, 0};
}

void ucHelp::Init(helmkit::Logger& log) {
    log_ = log;
    win32::setText(lblDescr_.window(), win32::loadString(STRING_DESCRIPTION));
}

// The right margin is a fifth of the left one.
void ucHelp::UserControl_Resize(int pixelWidth, int pixelHeight) {
    const int dpi = win32::dpiOf(handle());
    lblDescr_.setWidth(win32::toTwips(pixelWidth, dpi) - lblDescr_.left() * 6 / 5);
    lblDescr_.setHeight(win32::toTwips(pixelHeight, dpi) - lblDescr_.top());
    picture_.apply(dpi);
    lblDescr_.apply(dpi);
}

LRESULT ucHelp::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_SIZE) return TabPage::onMessage(message, wParam, lParam);
    UserControl_Resize(LOWORD(lParam), HIWORD(lParam));
    return 0;
}

}  // namespace support
