// Menus made from tables.
#pragma once

#include <string>
#include <vector>

#include "win32/base/handle.h"

namespace win32 {

// One row of a menu: a command, a separator (caption "-") or a submenu (with rows of its own).
struct MenuRow {
    UINT command = 0;
    std::wstring caption;
    std::vector<MenuRow> rows = {};
};

// A menu bar, which the window it is given to destroys.
HMENU createMenuBar(const std::vector<MenuRow>& rows);
OwnedMenu createPopUpMenu(const std::vector<MenuRow>& rows);

}  // namespace win32
