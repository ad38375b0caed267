// The main window: tab strip, pages, menu.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "app/pages.h"
#include "helmkit/client/logger.h"
#include "win32/windows/placed_control.h"
#include "win32/windows/tab_strip.h"
#include "win32/windows/window.h"

namespace app {

class FMain : public win32::Window {
  public:
    // Makes the window with its controls, hidden and empty. The table is kept as a reference.
    explicit FMain(std::span<const PageRow> table = pageTable());
    ~FMain() override;

    // The start-up sequence. False when a component is missing: the user has been told and the program is to
    // end.
    bool Form_Initialize();
    void Form_Load();
    void show();

    // Sees every message before its window does; returning true consumes it.
    bool preview(MSG& message);

  protected:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void InitTabStrip();
    void LogTabState();

    int pageOfKey(const std::wstring& key) const;
    void ShowCurrentPage();
    void ts_Click();
    void Form_KeyUp(UINT key, unsigned modifiers);
    void Form_Resize();
    void mnuRefresh_Click();
    void onCommand(UINT command);
    void onResolutionChanged(int dpi, const RECT& place);
    void adoptFont();

    // A page on the strip.
    struct ShownPage {
        std::unique_ptr<Page> page;
        win32::PlacedControl place;
        HWND window() const { return page->window().handle(); }
    };

    const std::span<const PageRow> table_;
    helmkit::Logger logger_;
    win32::TabStrip ts_;
    std::vector<ShownPage> pages_;  // in the order of the table
    bool hasPlacedPages_ = false;
    int currentPage_ = 0;  // from 1; 0 for none
    win32::PlacedControl strip_, lblFooter_;
    win32::OwnedFont font_;
    HWND lastFocus_ = nullptr;
};

// Where the program's file is, without a backslash at the end.
std::wstring programFolder();

}  // namespace app
