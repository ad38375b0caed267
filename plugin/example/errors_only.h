// A logger that stands before another one, and the plug-in that puts it there.
#pragma once

#include "qlncustom.h"
#include "win32/com/com_server.h"

namespace example {

// Asks the other logger for everything but a line of information, which ends here.
class ErrorsOnly : public win32::SingleInterfaceObject<IDispatch, &IID_IDispatch> {
  public:
    explicit ErrorsOnly(win32::ComPtr<IDispatch> next) : next_(std::move(next)) {}
    STDMETHODIMP GetTypeInfoCount(UINT* count) override { return next_->GetTypeInfoCount(count); }
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
        return next_->GetTypeInfo(index, locale, info);
    }
    STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override {
        return next_->GetIDsOfNames(iid, names, count, locale, ids);
    }
    STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                        VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) override;

  private:
    win32::ComPtr<IDispatch> next_;
};

class PlugIn : public win32::AutomationObject<ICCustom2, &IID_ICCustom2> {
  public:
    STDMETHODIMP Init(IDispatch** logger) override;
};

}  // namespace example
