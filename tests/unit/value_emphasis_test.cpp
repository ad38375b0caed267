// The bold red values of changed places, as the list asks for them while it draws.
#include <doctest/doctest.h>

#include "startup/ucOther.h"
#include "tests/support/page_fixture.h"
#include "tests/support/replaced_import.h"

namespace {

const COLORREF red = RGB(255, 0, 0);
const int changed = 0, unchanged = 1;  // rows

DWORD contrast = 0;
BOOL(WINAPI* realParametersW)(UINT, UINT, void*, UINT);
BOOL(WINAPI* realParametersA)(UINT, UINT, void*, UINT);

template <auto* real, class HighContrast>
BOOL WINAPI parametersInfo(UINT action, UINT number, void* record, UINT flags) {
    if (action != SPI_GETHIGHCONTRAST) return (*real)(action, number, record, flags);
    auto& setting = *static_cast<HighContrast*>(record);
    if (setting.cbSize != sizeof setting || number != sizeof setting) return FALSE;
    setting.dwFlags = contrast;
    return TRUE;
}

struct Drawing : PageFixture {
    ReplacedImport wideCall{"SystemParametersInfoW", &parametersInfo<&realParametersW, HIGHCONTRASTW>,
                            realParametersW};
    ReplacedImport ansiCall{"SystemParametersInfoA", &parametersInfo<&realParametersA, HIGHCONTRASTA>,
                            realParametersA};
    PageOf<startup::ucOther> page{parent.handle()};
    HWND list = page.ListViewObject().window();
    HDC context = ::CreateCompatibleDC(nullptr);
    NMLVCUSTOMDRAW draw = {};

    Drawing() {
        contrast = HCF_AVAILABLE;
        const std::wstring winlogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
        registry.setString(HKEY_LOCAL_MACHINE, winlogon, L"shell", L"evil.exe");
        registry.setString(HKEY_LOCAL_MACHINE, winlogon, L"UIHost", L"logonui.exe");
        helmkit::Logger logger = log.logger();
        page.Init(logger);
        REQUIRE(page.rows().size() == 2);
    }
    ~Drawing() { ::DeleteDC(context); }
    LRESULT ask(DWORD stage, int row, int column = 0) {
        ::SelectObject(context, ::GetStockObject(DEFAULT_GUI_FONT));
        draw = {};
        draw.nmcd.hdr = {list, 101, static_cast<UINT>(NM_CUSTOMDRAW)};
        draw.nmcd.dwDrawStage = stage;
        draw.nmcd.dwItemSpec = row;
        draw.nmcd.hdc = context;
        draw.nmcd.uItemState = CDIS_SELECTED;
        draw.iSubItem = column;
        draw.clrText = draw.clrTextBk = RGB(1, 2, 3);
        return ::SendMessageW(page.handle(), WM_NOTIFY, 101, reinterpret_cast<LPARAM>(&draw));
    }
    LRESULT askSubItem(int row, int column) { return ask(CDDS_ITEMPREPAINT | CDDS_SUBITEM, row, column); }
    LONG weight() const {
        LOGFONTW font = {};
        ::GetObjectW(::GetCurrentObject(context, OBJ_FONT), sizeof font, &font);
        return font.lfWeight;
    }
};

}  // namespace

TEST_CASE_FIXTURE(Drawing, "the value of a changed place is bold and red, its name is neither") {
    CHECK(ask(CDDS_PREPAINT, 0) == CDRF_NOTIFYITEMDRAW);
    CHECK(ask(CDDS_ITEMPREPAINT, changed) == CDRF_NOTIFYSUBITEMDRAW);
    CHECK(ask(CDDS_ITEMPREPAINT, unchanged) == CDRF_DODEFAULT);
    CHECK(ask(CDDS_POSTPAINT, changed) == CDRF_DODEFAULT);
    for (int time : {1, 2}) {
        CAPTURE(time);
        CHECK(askSubItem(changed, 1) == CDRF_NEWFONT);
        CHECK(weight() == FW_BOLD);
        CHECK(draw.clrText == red);
        CHECK(askSubItem(changed, 0) == CDRF_NEWFONT);
        CHECK(weight() != FW_BOLD);
        CHECK(draw.clrText == ::GetSysColor(COLOR_WINDOWTEXT));
    }
}

TEST_CASE_FIXTURE(Drawing, "red shows on a selected row, too, while the list has no focus") {
    page.ListViewObject().select(changed);
    askSubItem(changed, 1);
    CHECK((draw.nmcd.uItemState & CDIS_SELECTED) == 0);
    CHECK(draw.clrTextBk == ::GetSysColor(COLOR_BTNFACE));
    askSubItem(changed, 0);
    CHECK((draw.nmcd.uItemState & CDIS_SELECTED) != 0);
    page.ListViewObject().select(unchanged);
    askSubItem(changed, 1);
    CHECK(draw.clrTextBk == RGB(1, 2, 3));
}

TEST_CASE_FIXTURE(Drawing, "in high contrast a changed value is bold in the system's colour") {
    contrast = HCF_AVAILABLE | HCF_HIGHCONTRASTON;
    page.ListViewObject().select(changed);
    CHECK(askSubItem(changed, 1) == CDRF_NEWFONT);
    CHECK(weight() == FW_BOLD);
    CHECK(draw.clrText == ::GetSysColor(COLOR_WINDOWTEXT));
    CHECK((draw.nmcd.uItemState & CDIS_SELECTED) != 0);
    CHECK(draw.clrTextBk == RGB(1, 2, 3));
    contrast = HCF_AVAILABLE;
    askSubItem(changed, 1);
    CHECK(draw.clrText == red);
}
