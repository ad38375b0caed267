#include "win32/windows/tab_strip.h"

#include "win32/base/flavour.h"
#include "win32/windows/window.h"

namespace win32 {

void TabStrip::create(HWND parent, int id) {
    window_ = createControl(parent, L"SysTabControl32", {}, WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS, 0, id);
}

void TabStrip::adoptResolution(int dpi) {
    const int side = 6, above = 3;
    send(window_, TCM_SETPADDING, 0, MAKELPARAM(::MulDiv(side, dpi, 96), ::MulDiv(above, dpi, 96)));
}

void TabStrip::addTab(const std::wstring& key, const std::wstring& caption) {
    withFlavour([&]<class F>(F f) {
        auto text = spelled<F>(caption);
        typename F::TabItem record = {};
        record.mask = TCIF_TEXT;
        record.pszText = text.data();
        f.sendMessage(window_, f.isWide ? TCM_INSERTITEMW : TCM_INSERTITEMA, static_cast<WPARAM>(count()),
                      reinterpret_cast<LPARAM>(&record));
    });
    keys_.push_back(key);
}

std::wstring TabStrip::selectedKey() const {
    auto selected = static_cast<size_t>(send(window_, TCM_GETCURSEL));
    return selected < keys_.size() ? keys_[selected] : std::wstring();
}

void TabStrip::select(int position) {
    send(window_, TCM_SETCURSEL, position - 1);
}

}  // namespace win32
