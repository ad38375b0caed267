// The page of any category of startup places: a list, a box for the related file, a button, a context menu.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "helmkit/client/logger.h"
#include "helmkit/client/trap.h"
#include "startup/category.h"
#include "startup/page_layout.h"
#include "startup/value_emphasis.h"
#include "win32/system/resources.h"
#include "win32/windows/key_releases.h"
#include "win32/windows/list_view.h"
#include "win32/windows/tab_page.h"

namespace startup {

class StartupListControl : public win32::TabPage {
  public:
    // Makes the page, hidden, as a child of `parent`; its window text is the control's name ("ucRun1").
    StartupListControl(HWND parent, std::unique_ptr<Category> category);

    // Keeps the logger, which it may replace for the pages after this one, and fills the list.
    void Init(helmkit::Logger& log);
    win32::ListView& ListViewObject() { return lv_; }
    void RefreshList();

    // The data of a row, from 0.
    const StartupItem& itemOf(int row) const { return items_[lv_.tag(row)]; }
    // The rows as the list shows them.
    std::vector<ListedRow> rows() const;

  protected:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    LRESULT onNotify(const NMHDR& notification);
    void adoptResolution(int dpi);
    void fillList();
    int rowOfPlace(std::optional<LONG> place) const;
    // Only the row's icon remembers that an entry is protected.
    bool isProtected(int row) const;
    // The page may be destroyed while a message box or the pop-up menu lets messages run.
    bool isGone() const { return !handle(); }
    int messageBox(int number, UINT style, const std::wstring& argument) const;
    void deleteRow(int row);

    void lv_ItemClick();
    void lv_KeyUp(UINT key, unsigned modifiers);
    void lv_MouseUp();
    void cmdDelete_Click();
    void mnuProperties_Click();

    // Runs a procedure's body under the error trap.
    template <class Body>
    void trapped(const wchar_t* procedure, Body&& body) const {
        helmkit::trapped(log_, design_.typeName + std::wstring(procedure), body);
    }

    const std::unique_ptr<Category> category_;
    const CategoryDesign& design_;
    helmkit::Logger log_;
    std::vector<StartupItem> items_;
    int currentItem_ = win32::ListView::none;  // the row last taken as the selection by a key or the mouse

    win32::ListView lv_;
    win32::OwnedImageList il_;
    int imagesDpi_ = 0;
    PageLayout layout_;
    ValueEmphasis emphasis_;
    win32::KeyReleases lvKeys_;
};

}  // namespace startup
