// The page of one category of startup places: a list, a box for the related file, a button, a context menu.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "helmkit/client/logger.h"
#include "helmkit/client/trap.h"
#include "startup/StartupItem.h"
#include "startup/file_descriptions.h"
#include "startup/page_layout.h"
#include "startup/value_emphasis.h"
#include "win32/system/resources.h"
#include "win32/windows/key_releases.h"
#include "win32/windows/list_view.h"
#include "win32/windows/tab_page.h"

namespace startup {

// A category says where its places are, how an entry becomes a StartupItem, what is protected and what
// deleting does; the list, the selection, the keys, the menus and the layout are here, once.
class StartupListControl : public win32::TabPage {
  public:
    // Makes the page, hidden, as a child of `parent`; its window text is the control's name ("ucRun1").
    StartupListControl(HWND parent, const wchar_t* controlName, const PageDesign& design);

    // Keeps the logger, which it may replace for the pages after this one, and fills the list.
    void Init(helmkit::Logger& log);
    win32::ListView& ListViewObject() { return lv_; }
    void RefreshList();

    // The data of a row, from 0.
    const StartupItem& itemOf(int row) const { return items_[lv_.tag(row)]; }

  protected:
    // Appends what is found to the list, in order, and does not throw: a place or an entry that fails is
    // logged and the next is read.
    virtual void EnumItems(StartupItemList& list) = 0;
    // The field that names a row's icon.
    virtual const std::wstring& iconField() const = 0;
    // What the second column shows of an entry.
    virtual std::wstring secondColumn(const StartupItem& item) const;
    // Whether two entries, before and after a refresh, are the same one; on pages that keep their selection.
    virtual bool isSameEntry(const StartupItem&, const StartupItem&) const { return false; }
    // The delete command on a row.
    virtual void deleteRow(int row) = 0;

    // The common delete command: refuses a protected row with the message `refusal`, asks, lets the category
    // remove the entry, logs the line it gives back, tells the result and refreshes.
    struct Deletion {
        bool succeeded;
        std::wstring logLine;  // written whether it succeeded or not
    };
    void refuseOrDelete(int row, int refusal);
    virtual Deletion deleteItem(const StartupItem& item, const std::wstring& rowText);

    // Only the row's icon remembers that an entry is protected.
    bool isProtected(int row) const;

    // Opens the properties of the row's file, or says that it is not there.
    void showProperties(int row);

    // Of the refresh that is running, or was the last.
    FileDescriptions& fileDescriptions() { return *descriptions_; }
    const helmkit::Logger& log() const { return log_; }
    // The source of a log line of one of the control's procedures, as in "ucRun.RefreshList".
    std::wstring source(const wchar_t* procedure) const;
    // Runs a procedure's body under the error trap.
    template <class Body>
    void trapped(const wchar_t* procedure, Body&& body) const {
        helmkit::trapped(log_, source(procedure), body);
    }

    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    LRESULT onNotify(const NMHDR& notification);
    void adoptResolution(int dpi);
    void fillList();
    int rowToSelect(const StartupItem* selectedBefore) const;

    void lv_ItemClick();
    void lv_KeyUp(UINT key, unsigned modifiers);
    void lv_MouseUp();
    void cmdDelete_Click();
    void mnuProperties_Click();

    const PageDesign& design_;
    helmkit::Logger log_;
    std::unique_ptr<FileDescriptions> descriptions_;
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
