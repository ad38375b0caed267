#include "startup/StartupListControl.h"

#include "files/file_properties.h"
#include "helmkit/client/file_services.h"
#include "helmkit/client/shared_services.h"
#include "resources/messages.h"
#include "win32/system/desktop.h"
#include "win32/windows/menu.h"
#include "win32/windows/scale.h"

namespace startup {

namespace {

// The pictures stand in a strip, in the order of Icon; their colour silver is transparent.
const int iconWidth = 16;
const COLORREF silver = RGB(192, 192, 192);

int imageOf(Icon icon) {
    return static_cast<int>(icon);
}

enum ContextCommand : UINT { mnuDelete = 1, mnuProperties };

}  // namespace

StartupListControl::StartupListControl(HWND parent, std::unique_ptr<Category> category)
    : TabPage(parent, (category->design().typeName + std::wstring(L"1")).c_str()),
      category_(std::move(category)),
      design_(category_->design()) {
    lv_.create(handle(), lvId);
    adoptResolution(win32::dpiOf(handle()));
    for (int column : {0, 1}) lv_.addColumn(column, design_.columns[column]);
    layout_.create(handle(), design_, lv_);
    lvKeys_.listen(lv_.window(), [this](UINT key, unsigned modifiers) { lv_KeyUp(key, modifiers); });
}

void StartupListControl::adoptResolution(int dpi) {
    if (dpi == imagesDpi_) return;
    win32::OwnedImageList images = win32::loadImages(RESOURCE_STATE_IMAGES, iconWidth, silver, dpi);
    lv_.setImages(images.get());
    il_ = std::move(images);
    imagesDpi_ = dpi;
}

void StartupListControl::Init(helmkit::Logger& log) {
    log_ = log;
    RefreshList();
}

void StartupListControl::RefreshList() {
    trapped(L".RefreshList", [&] {
        std::optional<LONG> place;
        const int selected = lv_.selected();
        if (design_.keepsSelection && selected != win32::ListView::none) place = itemOf(selected).place();
        fillList();
        lv_.select(rowOfPlace(place));
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
    items_ = category_->EnumItems(log_).items();
    lv_.reserve(static_cast<int>(items_.size()));
    for (size_t i = 0; i < items_.size(); ++i) {
        const ListedRow texts = listedRow(design_, items_[i]);
        const int row = lv_.addRow(texts.text, imageOf(items_[i].icon()), static_cast<LPARAM>(i));
        lv_.setText(row, 1, texts.second);
    }
}

std::vector<ListedRow> StartupListControl::rows() const {
    std::vector<ListedRow> rows;
    for (int row = 0; row < lv_.count(); ++row) {
        rows.push_back({lv_.text(row, 0), lv_.text(row, 1), itemOf(row).file()});
    }
    return rows;
}

// The first row where none is asked for, or that place is no longer listed.
int StartupListControl::rowOfPlace(std::optional<LONG> place) const {
    for (int row = 0; place && row < lv_.count(); ++row) {
        if (itemOf(row).place() == *place) return row;
    }
    return 0;
}

bool StartupListControl::isProtected(int row) const {
    return lv_.image(row) == imageOf(Icon::protectedEntry);
}

void StartupListControl::lv_ItemClick() {
    trapped(L".lv_ItemClick", [&] {
        const int row = lv_.selected();
        if (row == win32::ListView::none || !design_.hasFileBox) return layout_.showFile({});
        const std::wstring file = itemOf(row).file();
        layout_.showFile(file.empty() ? win32::loadString(STRING_IMPROPERLY_CONFIGURED) : file);
    });
}

void StartupListControl::lv_KeyUp(UINT key, unsigned modifiers) {
    trapped(L".lv_KeyUp", [&] {
        if (key == VK_APPS && design_.hasContextMenuKey) return lv_MouseUp();
        if (key != VK_RETURN || modifiers != win32::altKey || !design_.hasContextMenu) return;
        currentItem_ = lv_.selected();
        if (currentItem_ == win32::ListView::none || itemOf(currentItem_).file().empty()) return;
        mnuProperties_Click();
    });
}

// The release of the right button, or of the context-menu key.
void StartupListControl::lv_MouseUp() {
    trapped(L".lv_MouseUp", [&] {
        currentItem_ = lv_.selected();
        if (currentItem_ == win32::ListView::none) return;
        std::vector<win32::MenuRow> rows = {{mnuDelete, L"&Delete"}};
        bool hasFile = !itemOf(currentItem_).file().empty();
        if (hasFile || !design_.hidesSeparator) rows.push_back({0, L"-"});
        if (hasFile) rows.push_back({mnuProperties, L"&Properties"});
        auto mnuContext = win32::createPopUpMenu(rows);
        auto& desktop = win32::desktop();
        const UINT command = desktop.popUpMenu(mnuContext.get(), desktop.cursorPosition(), handle());
        // A refresh meanwhile may have emptied the list, a closing the page.
        if (isGone() || currentItem_ == win32::ListView::none) return;
        switch (command) {
            case mnuDelete:
                return cmdDelete_Click();
            case mnuProperties:
                return mnuProperties_Click();
        }
    });
}

void StartupListControl::cmdDelete_Click() {
    trapped(L".cmdDelete_Click", [&] {
        const int row = lv_.selected();
        if (row == win32::ListView::none) return;
        if (design_.deletes) return deleteRow(row);
        currentItem_ = row;
        if (!itemOf(row).file().empty()) mnuProperties_Click();
    });
}

// Shows no box for the number 0.
int StartupListControl::messageBox(int number, UINT style, const std::wstring& argument) const {
    return number ? resources::showMessage(handle(), number, style, {argument}) : IDOK;
}

void StartupListControl::deleteRow(int row) {
    const StartupItem item = itemOf(row);
    const std::wstring text = lv_.text(row, 0);
    const DeletionMessages messages = category_->messagesFor(item);
    if (isProtected(row)) {
        messageBox(messages.refusal, resources::exclamation, text);
        return;
    }
    if (messageBox(messages.confirmation, resources::exclamationOkCancel, text) != IDOK || isGone()) return;
    const Category::Deletion deletion = category_->deleteItem(item, text, log_);
    if (!deletion.logLine.empty()) {
        log_.WriteLog(0, deletion.logLine, helmkit::information, deletion.logSource);
    }
    if (deletion.succeeded) {
        messageBox(messages.success, resources::informationBox, text);
    } else {
        messageBox(messages.failure, resources::exclamation, text);
    }
    if (!isGone()) RefreshList();
}

void StartupListControl::mnuProperties_Click() {
    trapped(L".mnuProperties_Click", [&] {
        const std::wstring file = itemOf(currentItem_).file();
        if (helmkit::fileServices().FileExists(file)) {
            files::ShowFileProperties(file, win32::topLevelOf(handle()));
        } else {
            messageBox(STRING_FILE_NOT_FOUND, resources::exclamation, file);
        }
    });
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
    if (notification.code == static_cast<UINT>(NM_CUSTOMDRAW) && design_.emphasizesValues) {
        return emphasis_.onCustomDraw(lv_, notification, imageOf(Icon::exclamation));
    }
    // The control keeps the release of the right button to itself and tells a click instead.
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
