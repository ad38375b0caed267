#include "bench/page.h"

namespace bench {

namespace {

std::wstring textOf(HWND list, int row, int column) {
    wchar_t text[512] = L"";
    LVITEMW item = {};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = 512;
    ::SendMessageW(list, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
    return text;
}

void requireSame(win32::ListView& ours, HWND floor, std::initializer_list<int> columns) {
    REQUIRE(ours.count() > 0);
    REQUIRE(ours.count() == ::SendMessageW(floor, LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < ours.count(); ++row) {
        for (int column : columns) {
            const std::wstring floorText = textOf(floor, row, column);
            REQUIRE_MESSAGE(ours.text(row, column) == floorText,
                            win32::toUtf8(ours.text(row, column) + L" against " + floorText));
        }
    }
}

}  // namespace

HiddenWindow::HiddenWindow() {
    create(L"QuillonBenchWindow", L"bench", WS_OVERLAPPEDWINDOW, 0, nullptr, nullptr);
    ::SetWindowPos(handle(), nullptr, 0, 0, 400, 300, SWP_NOZORDER | SWP_NOACTIVATE);
}

// The floor's list has nothing to do for each row that goes, so it is not told of each.
LRESULT HiddenWindow::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const bool clears = message == WM_NOTIFY &&
                        reinterpret_cast<const NMHDR*>(lParam)->code == static_cast<UINT>(LVN_DELETEALLITEMS);
    return clears ? TRUE : Window::onMessage(message, wParam, lParam);
}

void requireSameRows(win32::ListView& ours, HWND floor) {
    requireSame(ours, floor, {0, 1});
}

void requireSameValues(win32::ListView& ours, HWND floor) {
    requireSame(ours, floor, {1});
}

}  // namespace bench
