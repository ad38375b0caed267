// The controls around a page's list and where they stand.
#pragma once

#include <string>

#include "win32/base/platform.h"
#include "win32/windows/list_view.h"
#include "win32/windows/placed_control.h"

namespace startup {

// Which parts of the common shape a category's page has, and what they read.
struct PageDesign {
    const wchar_t* typeName;  // in the log
    const wchar_t* heading;   // above the list
    const wchar_t* columns[2];
    const wchar_t* note;    // left of the file box; on the button's row where there is no file box
    const wchar_t* button;  // its caption
    bool hasFileBox = true;
    bool hasContextMenu = true;
    bool hasContextMenuKey = true;
    bool hidesSeparator = true;     // together with Properties, for an entry without a file
    bool emphasizesValues = false;  // second column of rows with the exclamation icon
    bool keepsSelection = false;    // over a refresh; otherwise the first row is selected
};

// Control ids within a page.
enum PageControl : int {
    lvId = 101,
    txtFilenameId = 102,
    cmdDeleteId = 103,
    label4Id = 104,
    lblFilenameId = 105
};

class PageLayout {
  public:
    void create(HWND page, const PageDesign& design, const win32::ListView& list);

    // The text of the file box; nothing happens on a page without one.
    void showFile(const std::wstring& text) const;

    // Places everything for the page's inner size in pixels (design measures in twips).
    void resize(int width, int height, int dpi);

  private:
    win32::ListView list_;
    bool hasFileBox_ = true;
    win32::PlacedControl heading_, lv_, lblFilename_, txtFilename_, cmdDelete_;
};

}  // namespace startup
