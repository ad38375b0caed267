#include "bench/floor/list.h"

#include <utility>

namespace bench::floor {

namespace {

const wchar_t notSpecified[] = L"Not specified";

void insert(HWND list, int position, const Row& row) {
    LVITEMW item = {};
    item.mask = LVIF_TEXT | LVIF_IMAGE | LVIF_PARAM;
    item.iItem = position;
    item.pszText = const_cast<wchar_t*>(row.name.c_str());
    item.iImage = row.icon == L"OK";
    item.lParam = position;
    ::SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    LVITEMW second = {};
    second.iSubItem = 1;
    second.pszText = const_cast<wchar_t*>(row.manufacturer.empty() ? notSpecified : row.manufacturer.c_str());
    ::SendMessageW(list, LVM_SETITEMTEXTW, position, reinterpret_cast<LPARAM>(&second));
}

}  // namespace

void List::create(HWND parent) {
    window_ = ::CreateWindowExW(WS_EX_CLIENTEDGE, L"SysListView32", L"",
                                WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SINGLESEL, 10, 30, 300, 200, parent,
                                nullptr, nullptr, nullptr);
    for (int column : {0, 1}) {
        LVCOLUMNW record = {};
        record.mask = LVCF_TEXT | LVCF_SUBITEM | LVCF_WIDTH;
        record.cx = 140;
        record.pszText = const_cast<wchar_t*>(column == 0 ? L"Program Name" : L"Manufacturer");
        record.iSubItem = column;
        ::SendMessageW(window_, LVM_INSERTCOLUMNW, column, reinterpret_cast<LPARAM>(&record));
    }
}

void List::fill(std::vector<Row> rows) {
    rows_ = std::move(rows);
    ::SendMessageW(window_, WM_SETREDRAW, FALSE, 0);
    ::SendMessageW(window_, LVM_DELETEALLITEMS, 0, 0);
    ::SendMessageW(window_, LVM_SETITEMCOUNT, rows_.size(), 0);
    for (size_t i = 0; i < rows_.size(); ++i) insert(window_, static_cast<int>(i), rows_[i]);
    ::SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
    ::InvalidateRect(window_, nullptr, TRUE);
}

}  // namespace bench::floor
