#include "startup/value_emphasis.h"

#include "win32/windows/window.h"

namespace startup {

namespace {

const COLORREF red = 255;

// A selected row takes the system's colours instead of ours. With the keyboard focus that keeps it readable
// on the highlight; without, the row is only grey, and red can stay red.
void drawAsUnselectedWithoutFocus(const win32::ListView& list, int row, NMLVCUSTOMDRAW& draw) {
    if (list.selected() != row || ::GetFocus() == list.window()) return;
    draw.nmcd.uItemState &= ~CDIS_SELECTED;
    draw.clrTextBk = ::GetSysColor(COLOR_BTNFACE);
}

}  // namespace

HFONT ValueEmphasis::boldFontFor(HDC context) {
    auto font = static_cast<HFONT>(::GetCurrentObject(context, OBJ_FONT));
    if (font != bold_.get() && font != boldOf_) {
        boldOf_ = font;
        bold_ = win32::boldVersionOf(font);
    }
    return bold_.get();
}

LRESULT ValueEmphasis::onCustomDraw(const win32::ListView& list, const NMHDR& notification, int image) {
    auto& draw = const_cast<NMLVCUSTOMDRAW&>(reinterpret_cast<const NMLVCUSTOMDRAW&>(notification));
    const int row = static_cast<int>(draw.nmcd.dwItemSpec);
    switch (draw.nmcd.dwDrawStage) {
        case CDDS_PREPAINT:
            return CDRF_NOTIFYITEMDRAW;
        case CDDS_ITEMPREPAINT:
            return list.image(row) == image ? CDRF_NOTIFYSUBITEMDRAW : CDRF_DODEFAULT;
        case CDDS_ITEMPREPAINT | CDDS_SUBITEM: {
            HFONT bold = boldFontFor(draw.nmcd.hdc);
            const bool isValue = draw.iSubItem == 1;
            ::SelectObject(draw.nmcd.hdc, isValue ? bold : boldOf_);
            draw.clrText = isValue && !win32::isHighContrast() ? red : ::GetSysColor(COLOR_WINDOWTEXT);
            if (draw.clrText == red) drawAsUnselectedWithoutFocus(list, row, draw);
            return CDRF_NEWFONT;
        }
    }
    return CDRF_DODEFAULT;
}

}  // namespace startup
