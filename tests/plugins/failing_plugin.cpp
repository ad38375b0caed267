// A plug-in whose Init raises: the start goes on past it.
#include "qlncustom.h"
#include "win32/com/com_server.h"
#include "win32/com/dll/exports.h"

namespace {

class FailingPlugin : public win32::AutomationObject<ICCustom2, &IID_ICCustom2> {
  public:
    STDMETHODIMP Init(IDispatch**) override {
        return method([] { win32::raise(E_ABORT, L"The plug-in will not start"); });
    }
};

const win32::ComClass classes[] = {
    {&CLSID_CCustom2, L"QLNCustom.CCustom2", win32::createObject<FailingPlugin>}};

const win32::ComModule module = {classes, 1, &LIBID_QLNCustom, 2, 1};

}  // namespace

const win32::ComModule& win32::moduleOfThisDll() {
    return module;
}
