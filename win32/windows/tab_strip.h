// The tab common control, with a key for each tab.
#pragma once

#include <string>
#include <vector>

#include "win32/base/platform.h"

namespace win32 {

class TabStrip {
  public:
    // The window is the parent's, which destroys it.
    void create(HWND parent, int id);
    HWND window() const { return window_; }

    // Room around the captions, in pixels for a resolution; the control's own default is that for 96.
    void adoptResolution(int dpi);
    void addTab(const std::wstring& key, const std::wstring& caption);
    int count() const { return static_cast<int>(keys_.size()); }
    // The key of the selected tab, empty when none is selected.
    std::wstring selectedKey() const;
    // Tabs are counted from 1.
    void select(int position);

  private:
    HWND window_ = nullptr;
    std::vector<std::wstring> keys_;
};

}  // namespace win32
