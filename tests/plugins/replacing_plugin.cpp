// QLNCustom.dll as somebody else might write it.
#include "qlncustom.h"
#include "tests/plugins/file_logger.h"
#include "win32/com/com_server.h"
#include "win32/com/dll/exports.h"

namespace {

class ReplacingPlugin : public win32::AutomationObject<ICCustom2, &IID_ICCustom2> {
  public:
    STDMETHODIMP Init(IDispatch** logger) override {
        return method([&] {
            auto replacement = newFileLogger();
            auto replaced = win32::ComPtr<IDispatch>::adopt(*logger);
            *logger = replacement.release();
        });
    }
};

const win32::ComClass classes[] = {
    {&CLSID_CCustom2, L"QLNCustom.CCustom2", win32::createObject<ReplacingPlugin>}};

const win32::ComModule module = {classes, 1, &LIBID_QLNCustom, 2, 1};

}  // namespace

const win32::ComModule& win32::moduleOfThisDll() {
    return module;
}
