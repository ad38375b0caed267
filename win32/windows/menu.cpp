#include "win32/windows/menu.h"

#include "win32/base/flavour.h"

namespace win32 {

namespace {

void append(HMENU menu, const std::vector<MenuRow>& rows) {
    for (const MenuRow& row : rows) {
        UINT flags = row.caption == L"-" ? MF_SEPARATOR : MF_STRING;
        UINT_PTR command = row.command;
        if (!row.rows.empty()) {
            HMENU submenu = ::CreatePopupMenu();
            append(submenu, row.rows);
            flags = MF_POPUP;
            command = reinterpret_cast<UINT_PTR>(submenu);
        }
        withFlavour([&](auto f) { f.appendMenu(menu, flags, command, f.in(row.caption)); });
    }
}

}  // namespace

HMENU createMenuBar(const std::vector<MenuRow>& rows) {
    HMENU bar = ::CreateMenu();
    append(bar, rows);
    return bar;
}

OwnedMenu createPopUpMenu(const std::vector<MenuRow>& rows) {
    OwnedMenu menu(::CreatePopupMenu());
    append(menu.get(), rows);
    return menu;
}

}  // namespace win32
