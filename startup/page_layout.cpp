#include "startup/page_layout.h"

#include "win32/windows/scale.h"
#include "win32/windows/window.h"
#include "win32/windows/window_place.h"

namespace startup {

namespace {

// Design measures in twips.
const int headingHeight = 255, listTop = 285, labelHeight = 255;
const int fileBoxLeft = 1110, fileBoxHeight = 315;
const int buttonWidth = 1995, buttonHeight = 375;
const int noteWidth = 5000;

}  // namespace

void PageLayout::create(HWND page, const CategoryDesign& design, const win32::ListView& list) {
    using win32::createControl;
    list_ = list;
    hasFileBox_ = design.hasFileBox;
    lv_ = {list.window(), 0, listTop, 0, 0};
    heading_ = {createControl(page, L"Static", design.heading, WS_VISIBLE | SS_NOPREFIX, 0, label4Id), 0, 0,
                0, headingHeight};
    // What a screen reader calls the list: the label before it, or its own text where nothing looks for
    // labels.
    win32::putBeforeSiblings(heading_.window());
    win32::setText(list.window(), design.heading);
    lblFilename_ = {createControl(page, L"Static", design.note, WS_VISIBLE, 0, lblFilenameId), 0, 0,
                    hasFileBox_ ? fileBoxLeft - 60 : noteWidth, labelHeight};
    if (hasFileBox_) {
        HWND box = createControl(page, L"Edit", {}, WS_VISIBLE | WS_TABSTOP | ES_READONLY | ES_AUTOHSCROLL,
                                 WS_EX_CLIENTEDGE, txtFilenameId);
        txtFilename_ = {box, fileBoxLeft, 0, 0, fileBoxHeight};
    }
    cmdDelete_ = {createControl(page, L"Button", design.button, WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON, 0,
                                cmdDeleteId),
                  0, 0, buttonWidth, buttonHeight};
}

void PageLayout::showFile(const std::wstring& text) const {
    if (hasFileBox_) win32::setText(txtFilename_.window(), text);
}

void PageLayout::resize(int pixelWidth, int pixelHeight, int dpi) {
    const int width = win32::toTwips(pixelWidth, dpi), height = win32::toTwips(pixelHeight, dpi);
    lv_.setWidth(width);
    const int columnWidth = (lv_.width() - 120 - 255) / 2;
    cmdDelete_.setLeft(lv_.left() + lv_.width() - cmdDelete_.width() - 15);
    cmdDelete_.setTop(height - cmdDelete_.height() - 60);
    if (hasFileBox_) {
        txtFilename_.setTop(cmdDelete_.top() - 360);
        txtFilename_.setWidth(lv_.left() + lv_.width() - txtFilename_.left() - 15);
        lblFilename_.setTop(txtFilename_.top() + 30);
        lv_.setHeight(txtFilename_.top() - lv_.top() - 60);
    } else {
        lblFilename_.setTop(cmdDelete_.top());
        lv_.setHeight(lblFilename_.top() - lv_.top() - 60);
    }
    heading_.setWidth(width);
    for (const auto* control : {&heading_, &lv_, &lblFilename_, &txtFilename_, &cmdDelete_}) {
        if (control->window()) control->apply(dpi);
    }
    for (int column : {0, 1}) list_.setColumnWidth(column, win32::toPixels(columnWidth, dpi));
}

}  // namespace startup
