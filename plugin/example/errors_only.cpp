// An example plug-in: of everything that Quillon logs only what went wrong reaches the logs.
#include "plugin/example/errors_only.h"

#include "win32/com/dll/exports.h"

namespace example {

const LONG information = 5;

// The arguments of WriteLog stand last first: source, level, text, code.
STDMETHODIMP ErrorsOnly::Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                                VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) {
    const bool isLine = parameters && parameters->cArgs == 4 && parameters->rgvarg[1].vt == VT_I4;
    if (isLine && parameters->rgvarg[1].lVal == information) return S_OK;
    return next_->Invoke(id, iid, locale, flags, parameters, result, exception, wrongArgument);
}

STDMETHODIMP PlugIn::Init(IDispatch** logger) {
    if (!logger || !*logger) return S_OK;
    return method([&] { *logger = new ErrorsOnly(win32::ComPtr<IDispatch>::adopt(*logger)); });
}

}  // namespace example

const win32::ComModule& win32::moduleOfThisDll() {
    static const ComClass classes[] = {
        {&CLSID_CCustom2, L"QLNCustom.CCustom2", createObject<example::PlugIn>}};
    static const ComModule module = {classes, 1, &LIBID_QLNCustom, 2, 1};
    return module;
}
