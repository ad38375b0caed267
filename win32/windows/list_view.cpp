#include "win32/windows/list_view.h"

#include <climits>

#include "win32/base/error.h"
#include "win32/base/flavour.h"
#include "win32/windows/window.h"

namespace win32 {

namespace {

// Message numbers exist in an ANSI and a wide form; the control answers the form it is asked in.
template <class F>
constexpr UINT choose(UINT wide, UINT ansi) {
    return F::isWide ? wide : ansi;
}

}  // namespace

void ListView::create(HWND parent, int id) {
    window_ = createControl(
        parent, L"SysListView32", {},
        WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS,
        WS_EX_CLIENTEDGE, id);
    send(window_, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
}

void ListView::addColumn(int column, const std::wstring& title) {
    withFlavour([&]<class F>(F f) {
        auto text = spelled<F>(title);
        typename F::ListViewColumn record = {};
        record.mask = LVCF_TEXT | LVCF_SUBITEM;
        record.pszText = text.data();
        record.iSubItem = column;
        f.sendMessage(window_, choose<F>(LVM_INSERTCOLUMNW, LVM_INSERTCOLUMNA), static_cast<WPARAM>(column),
                      reinterpret_cast<LPARAM>(&record));
    });
}

void ListView::setColumnWidth(int column, int pixels) {
    send(window_, LVM_SETCOLUMNWIDTH, column, MAKELPARAM(pixels < 0 ? 0 : pixels, 0));
}

void ListView::setImages(HIMAGELIST images) {
    send(window_, LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(images));
}

void ListView::clear() {
    send(window_, LVM_DELETEALLITEMS);
}

void ListView::reserve(int rows) {
    send(window_, LVM_SETITEMCOUNT, rows);
}

int ListView::addRow(const std::wstring& text, int image, LPARAM tag) {
    return withFlavour([&]<class F>(F f) {
        auto characters = spelled<F>(text);
        typename F::ListViewItem record = {};
        record.mask = LVIF_TEXT | LVIF_IMAGE | LVIF_PARAM;
        record.iItem = INT_MAX;  // after the last
        record.pszText = characters.data();
        record.iImage = image;
        record.lParam = tag;
        // A window that has gone answers 0 to everything.
        const LRESULT row = ::IsWindow(window_)
                                ? f.sendMessage(window_, choose<F>(LVM_INSERTITEMW, LVM_INSERTITEMA),
                                                WPARAM{0}, reinterpret_cast<LPARAM>(&record))
                                : none;
        if (row < 0) raise(E_FAIL, L"The list takes no further row");
        return static_cast<int>(row);
    });
}

void ListView::setText(int row, int column, const std::wstring& text) {
    withFlavour([&]<class F>(F f) {
        auto characters = spelled<F>(text);
        typename F::ListViewItem record = {};
        record.iSubItem = column;
        record.pszText = characters.data();
        f.sendMessage(window_, choose<F>(LVM_SETITEMTEXTW, LVM_SETITEMTEXTA), static_cast<WPARAM>(row),
                      reinterpret_cast<LPARAM>(&record));
    });
}

int ListView::count() const {
    return static_cast<int>(send(window_, LVM_GETITEMCOUNT));
}

std::wstring ListView::text(int row, int column) const {
    return withFlavour([&]<class F>(F f) {
        for (size_t size = 512;; size *= 4) {
            TextBuffer<F> buffer(size);
            typename F::ListViewItem record = {};
            record.iSubItem = column;
            record.pszText = buffer.data();
            record.cchTextMax = static_cast<int>(size);
            auto length = static_cast<size_t>(
                f.sendMessage(window_, choose<F>(LVM_GETITEMTEXTW, LVM_GETITEMTEXTA),
                              static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&record)));
            if (length + 1 < size) return buffer.text(length);
        }
    });
}

int ListView::image(int row) const {
    LVITEMA record = {};  // without text both flavours are one
    record.mask = LVIF_IMAGE;
    record.iItem = row;
    return send(window_, LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&record)) ? record.iImage : none;
}

LPARAM ListView::tag(int row) const {
    LVITEMA record = {};
    record.mask = LVIF_PARAM;
    record.iItem = row;
    return send(window_, LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&record)) ? record.lParam : none;
}

int ListView::selected() const {
    if (!::IsWindow(window_)) return none;
    return static_cast<int>(
        send(window_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), MAKELPARAM(LVNI_SELECTED, 0)));
}

void ListView::select(int row) {
    LVITEMA record = {};
    record.stateMask = record.state = LVIS_SELECTED | LVIS_FOCUSED;
    send(window_, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&record));
    send(window_, LVM_ENSUREVISIBLE, row, FALSE);
}

void ListView::setRedraw(bool redraw) {
    send(window_, WM_SETREDRAW, redraw);
    if (redraw) ::InvalidateRect(window_, nullptr, TRUE);
}

}  // namespace win32
