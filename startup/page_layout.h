// The controls around a page's list and where they stand.
#pragma once

#include <string>

#include "startup/category_design.h"
#include "win32/windows/list_view.h"
#include "win32/windows/placed_control.h"

namespace startup {

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
    void create(HWND page, const CategoryDesign& design, const win32::ListView& list);

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
