// The main window: creating it runs the start-up sequence, its message loop is the program's.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "helmkit/client/logger.h"
#include "helmkit/client/trap.h"
#include "startup/StartupListControl.h"
#include "support/ucHelp.h"
#include "win32/windows/placed_control.h"
#include "win32/windows/tab_strip.h"
#include "win32/windows/window.h"

namespace app {

class FMain : public win32::Window {
  public:
    // Makes the window with its controls, hidden and empty.
    FMain();
    ~FMain() override;

    // The start-up sequence. False when a component is missing: the user has been told and the program is to
    // end.
    bool Form_Initialize();
    void Form_Load();
    void show();

    // Sees every message before its window does; true when the message is dealt with.
    bool preview(MSG& message);

  protected:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    // Start-up (start_up.cpp).
    void callPlugIn();
    void InitTabStrip();

    // Pages (FMain.cpp).
    int pageOfKey(const std::wstring& key) const;
    void ShowCurrentPage();
    void ts_Click();
    void Form_KeyUp(UINT key, unsigned modifiers);
    void Form_Resize();
    void mnuRefresh_Click();
    void onCommand(UINT command);
    void onResolutionChanged(int dpi, const RECT& place);
    void adoptFont();

    // Backup and restore (backup.cpp).
    void BackupRegistry();
    void mnuBackup_Click();
    void mnuRestore_Click();

    // Activity logs (tab_state.cpp).
    void LogTabState();

    // Companion tools and web pages (tools_menu.cpp).
    void mnuTandem_Click(unsigned index);
    void mnuVisitWebsite_Click();
    void mnuAbout_Click();

    template <class Body>
    void trapped(const wchar_t* procedure, Body&& body) {
        helmkit::trapped(logger_, source(procedure), body);
    }
    static std::wstring source(const wchar_t* procedure) { return std::wstring(L"FMain") + procedure; }

    struct Page {
        const wchar_t* key;  // of its tab
        win32::Window* window;
        win32::PlacedControl place;
    };

    helmkit::Logger logger_;
    win32::TabStrip ts_;
    std::unique_ptr<support::ucHelp> ucHelp1_;
    // The four startup pages in their order: Run, Winlogon, Other, Services.
    std::vector<std::unique_ptr<startup::StartupListControl>> startupPages_;
    std::vector<Page> pages_;
    int currentPage_ = 0;  // from 1; 0 for none
    win32::PlacedControl strip_, lblFooter_;
    win32::OwnedFont font_;
    HWND lastFocus_ = nullptr;
};

// Where the program's file is, without a backslash at the end.
std::wstring programFolder();

}  // namespace app
