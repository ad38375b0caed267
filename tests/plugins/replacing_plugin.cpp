// QLNCustom.dll as somebody else might write it.
#include "qlncustom.h"
#include "tests/plugins/file_logger.h"
#include "win32/com/com_server.h"
#include "win32/com/dll/exports.h"

namespace {

// Writes a line when it goes.
class ReplacingPlugin : public win32::AutomationObject<ICCustom2, &IID_ICCustom2> {
  public:
    STDMETHODIMP Init(IDispatch** logger) override {
        return method([&] {
            replacement_ = newFileLogger();
            auto replaced = win32::ComPtr<IDispatch>::adopt(*logger);
            *logger = win32::ComPtr<IDispatch>(replacement_).release();
        });
    }

  private:
    ~ReplacingPlugin() override {
        if (!replacement_) return;
        win32::Variant line[] = {win32::Variant(LONG{0}), win32::Variant(std::wstring(L"plug-in released")),
                                 win32::Variant(LONG{5}), win32::Variant(std::wstring())};
        win32::invoke(replacement_.get(), L"WriteLog", line, 4);
    }

    win32::ComPtr<IDispatch> replacement_;
};

const win32::ComClass classes[] = {
    {&CLSID_CCustom2, L"QLNCustom.CCustom2", win32::createObject<ReplacingPlugin>}};

const win32::ComModule module = {classes, 1, &LIBID_QLNCustom, 2, 1};

}  // namespace

const win32::ComModule& win32::moduleOfThisDll() {
    return module;
}
