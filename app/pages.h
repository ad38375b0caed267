// The pages of the main window, as a table.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "helmkit/client/logger.h"
#include "startup/StartupListControl.h"

namespace app {

// A page as the main window knows it.
class Page {
  public:
    virtual ~Page() = default;
    virtual win32::Window& window() = 0;
    // The page may replace the logger for those after it.
    virtual void Init(helmkit::Logger& logger) = 0;
    virtual void RefreshList() {}
    virtual std::vector<startup::ListedRow> rows() const { return {}; }
};

struct PageRow {
    const wchar_t* key;  // of its tab
    const wchar_t* caption;
    const wchar_t*
        logTemplate;  // of a listed row: text, second column, related file; null for a page without a list
    std::unique_ptr<Page> (*make)(HWND parent);
};

std::unique_ptr<Page> makeStartupPage(HWND parent, std::unique_ptr<startup::Category> category);

// The `make` of a category's row.
template <class Category>
std::unique_ptr<Page> makePage(HWND parent) {
    return makeStartupPage(parent, std::make_unique<Category>());
}

// All pages in the order of their tabs. A category is added by its row here.
std::span<const PageRow> pageTable();

}  // namespace app
