// The smallest list of startup entries: a list view, and for each row its texts in a plain structure.
#pragma once

#include <string>
#include <vector>

#include "bench/floor/windows.h"

namespace bench::floor {

struct Row {
    std::wstring name, manufacturer, file;
    HKEY hive = nullptr;
    std::wstring keyPath, valueName, icon;
};

class List {
  public:
    void create(HWND parent);
    HWND window() const { return window_; }
    // Shows these rows instead of those before, with drawing off meanwhile.
    void fill(std::vector<Row> rows);

  private:
    HWND window_ = nullptr;
    std::vector<Row> rows_;
};

}  // namespace bench::floor
