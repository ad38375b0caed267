#include "startup/StartupListControl.h"

#include <algorithm>
#include <iterator>

#include "files/file_properties.h"
#include "helmkit/client/file_services.h"
#include "resources/messages.h"
#include "resources/resource_ids.h"
#include "win32/system/desktop.h"
#include "win32/windows/menu.h"
#include "win32/windows/scale.h"

namespace startup {

namespace {

// The row icons in the order of their picture strip; the picture's colour silver is transparent.
const std::wstring* const iconKeys[] = {&icon::exclamation, &icon::protectedEntry, &icon::ordinary};
const int iconWidth = 16;
const COLORREF silver = RGB(192, 192, 192);

int imageOf(const std::wstring& key) {
    auto found = std::find_if(std::begin(iconKeys), std::end(iconKeys), [&](auto* k) { return *k == key; });
    return static_cast<int>(found - std::begin(iconKeys));
}

enum ContextCommand : UINT { mnuDelete = 1, mnuProperties };

}  // namespace

StartupListControl::StartupListControl(HWND parent, const wchar_t* controlName, const PageDesign& design)
    : TabPage(parent, controlName), design_(design) {
    lv_.create(handle(), lvId);
    adoptResolution(win32::dpiOf(handle()));
    for (int column : {0, 1}) lv_.addColumn(column, design.columns[column]);
    layout_.create(handle(), design, lv_);
    lvKeys_.listen(lv_.window(), [this](UINT key, unsigned modifiers) { lv_KeyUp(key, modifiers); });
}

void StartupListControl::adoptResolution(int dpi) {
    if (dpi == imagesDpi_) return;
    win32::OwnedImageList images = win32::loadImages(RESOURCE_STATE_IMAGES, iconWidth, silver, dpi);
    lv_.setImages(images.get());
    il_ = std::move(images);
    imagesDpi_ = dpi;
}

std::wstring StartupListControl::source(const wchar_t* procedure) const {
    return std::wstring(design_.typeName) + procedure;
}

void StartupListControl::Init(helmkit::Logger& log) {
    log_ = log;
    RefreshList();
}

void StartupListControl::RefreshList() {
    trapped(L".RefreshList", [&] {
        std::unique_ptr<StartupItem> before;
        if (design_.keepsSelection && lv_.selected() != win32::ListView::none) {
            before = std::make_unique<StartupItem>(itemOf(lv_.selected()));
        }
        fillList();
        if (lv_.count() > 0) lv_.select(rowToSelect(before.get()));
        lv_ItemClick();
    });
}

void StartupListControl::fillList() {
    win32::WaitCursor hourGlass;
    win32::DrawingOff drawingOff(lv_);
    lv_.clear();
    items_.clear();
    currentItem_ = win32::ListView::none;
    layout_.showFile({});
    descriptions_ = std::make_unique<FileDescriptions>();
    StartupItemList list;
    EnumItems(list);
    items_ = list.records();
    lv_.reserve(static_cast<int>(items_.size()));
    for (size_t i = 0; i < items_.size(); ++i) {
        const StartupItem& item = items_[i];
        int row = lv_.addRow(item.text(field::Name), imageOf(item.text(iconField())), static_cast<LPARAM>(i));
        lv_.setText(row, 1, secondColumn(item));
    }
}

std::wstring StartupListControl::secondColumn(const StartupItem& item) const {
    std::wstring manufacturer = item.text(field::Manufacturer);
    return manufacturer.empty() ? win32::loadString(STRING_NOT_SPECIFIED) : manufacturer;
}

int StartupListControl::rowToSelect(const StartupItem* selectedBefore) const {
    for (int row = 0; selectedBefore && row < lv_.count(); ++row) {
        if (isSameEntry(itemOf(row), *selectedBefore)) return row;
    }
    return 0;
}

bool StartupListControl::isProtected(int row) const {
    return lv_.image(row) == imageOf(icon::protectedEntry);
}

void StartupListControl::lv_ItemClick() {
    trapped(L".lv_ItemClick", [&] {
        int row = lv_.selected();
        if (row == win32::ListView::none || !design_.hasFileBox) return layout_.showFile({});
        std::wstring file = itemOf(row).text(field::Dll);
        layout_.showFile(file.empty() ? win32::loadString(STRING_IMPROPERLY_CONFIGURED) : file);
    });
}

void StartupListControl::lv_KeyUp(UINT key, unsigned modifiers) {
    trapped(L".lv_KeyUp", [&] {
        if (key == VK_APPS && design_.hasContextMenuKey) return lv_MouseUp();
        if (key != VK_RETURN || modifiers != win32::altKey || !design_.hasContextMenu) return;
        currentItem_ = lv_.selected();
        if (currentItem_ == win32::ListView::none || itemOf(currentItem_).text(field::Dll).empty()) return;
        mnuProperties_Click();
    });
}

// The release of the right button, or of the context-menu key.
void StartupListControl::lv_MouseUp() {
    trapped(L".lv_MouseUp", [&] {
        currentItem_ = lv_.selected();
        if (currentItem_ == win32::ListView::none) return;
        std::vector<win32::MenuRow> rows = {{mnuDelete, L"&Delete"}};
        bool hasFile = !itemOf(currentItem_).text(field::Dll).empty();
        if (hasFile || !design_.hidesSeparator) rows.push_back({0, L"-"});
        if (hasFile) rows.push_back({mnuProperties, L"&Properties"});
        auto mnuContext = win32::createPopUpMenu(rows);
        auto& desktop = win32::desktop();
        switch (desktop.popUpMenu(mnuContext.get(), desktop.cursorPosition(), handle())) {
            case mnuDelete:
                return cmdDelete_Click();
            case mnuProperties:
                return mnuProperties_Click();
        }
    });
}

void StartupListControl::cmdDelete_Click() {
    trapped(L".cmdDelete_Click", [&] {
        int row = lv_.selected();
        if (row != win32::ListView::none) deleteRow(row);
    });
}

void StartupListControl::refuseOrDelete(int row, int refusal) {
    const std::wstring text = lv_.text(row, 0);
    if (isProtected(row)) {
        showMessage(handle(), refusal, exclamation, {text});
        return;
    }
    if (showMessage(handle(), STRING_CONFIRM_DELETE, exclamationOkCancel, {text}) != IDOK) return;
    Deletion deletion = deleteItem(itemOf(row), text);
    log_.WriteLog(0, deletion.logLine, helmkit::information, {});
    if (deletion.succeeded) {
        showMessage(handle(), STRING_DELETED, informationBox, {text});
    } else {
        showMessage(handle(), STRING_ACCESS_DENIED, exclamation, {text});
    }
    RefreshList();
}

StartupListControl::Deletion StartupListControl::deleteItem(const StartupItem&, const std::wstring&) {
    return {false, {}};
}

void StartupListControl::mnuProperties_Click() {
    trapped(L".mnuProperties_Click", [&] { showProperties(currentItem_); });
}

void StartupListControl::showProperties(int row) {
    std::wstring file = itemOf(row).text(field::Dll);
    if (helmkit::fileServices().FileExists(file)) {
        files::ShowFileProperties(file, win32::topLevelOf(handle()));
    } else {
        showMessage(handle(), STRING_FILE_NOT_FOUND, exclamation, {file});
    }
}

LRESULT StartupListControl::onNotify(const NMHDR& notification) {
    if (notification.idFrom != lvId) return 0;
    if (notification.code == LVN_ITEMCHANGED) {
        const auto& change = reinterpret_cast<const NMLISTVIEW&>(notification);
        bool selectionChanged = (change.uOldState ^ change.uNewState) & LVIS_SELECTED;
        if ((change.uChanged & LVIF_STATE) && selectionChanged) lv_ItemClick();
    }
    // The rows are our own: no need to hear of each that goes.
    if (notification.code == static_cast<UINT>(LVN_DELETEALLITEMS)) return TRUE;
    // The control keeps the release of the right button to itself and tells a click instead.
    if (notification.code == static_cast<UINT>(NM_CUSTOMDRAW) && design_.emphasizesValues) {
        return emphasis_.onCustomDraw(lv_, notification, imageOf(icon::exclamation));
    }
    if (notification.code == static_cast<UINT>(NM_RCLICK) && design_.hasContextMenu) lv_MouseUp();
    return 0;
}

LRESULT StartupListControl::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE: {
            const int dpi = win32::dpiOf(handle());
            adoptResolution(dpi);
            layout_.resize(LOWORD(lParam), HIWORD(lParam), dpi);
            return 0;
        }
        case WM_NOTIFY:
            return onNotify(*reinterpret_cast<const NMHDR*>(lParam));
        case WM_COMMAND:
            if (LOWORD(wParam) == cmdDeleteId && HIWORD(wParam) == BN_CLICKED) cmdDelete_Click();
            return 0;
        case WM_SETFOCUS:
            ::SetFocus(lv_.window());
            return 0;
    }
    return TabPage::onMessage(message, wParam, lParam);
}

}  // namespace startup
