// COM on the object's side: what every Automation object of this program's own DLLs shares.
//
// Objects live in single-threaded apartments. No exception leaves a method: bodies run inside `guarded`,
// which turns what they throw into an HRESULT with IErrorInfo.
#pragma once

#include <string>

#include "win32/com/com.h"
#include "win32/com/com_dispatch.h"
#include "win32/com/counted_object.h"

namespace win32 {

// The type library of this module, from the TYPELIB resource of its file; thrown when there is none.
ComPtr<ITypeLib> moduleTypeLibrary();

// Describes the exception being handled to COM (SetErrorInfo) and gives its HRESULT.
HRESULT reportCurrentError(REFIID iid) noexcept;

template <class Body>
HRESULT guarded(REFIID iid, Body body) noexcept {
    try {
        body();
        return S_OK;
    } catch (...) {
        return reportCurrentError(iid);
    }
}

// The pointer that a caller gave for a result, emptied; thrown when it is null.
template <class Type>
Type& result(Type* pointer) {
    if (!pointer) raise(E_POINTER, L"No place for the result was given");
    return *pointer = Type();
}

// The base of an object with one dual interface: its counting, IUnknown, IDispatch and ISupportErrorInfo.
template <class Interface, const IID* iid>
class AutomationObject : public CountedObject<Interface, ISupportErrorInfo> {
  public:
    STDMETHODIMP QueryInterface(REFIID wanted, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (wanted == IID_IUnknown || wanted == IID_IDispatch || wanted == *iid) {
            *object = static_cast<Interface*>(this);
        } else if (wanted == IID_ISupportErrorInfo) {
            *object = static_cast<ISupportErrorInfo*>(this);
        } else {
            return E_NOINTERFACE;
        }
        this->AddRef();
        return S_OK;
    }
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = 1;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        return dispatchTypeInfo(*iid, index, info);
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        return dispatchIds(*iid, names, count, ids);
    }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, UINT* wrongArgument) override {
        return dispatchInvoke(*iid, static_cast<Interface*>(this), id, flags, parameters, result, exception,
                              wrongArgument);
    }

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID asked) override { return asked == *iid ? S_OK : S_FALSE; }

  protected:
    template <class Body>
    HRESULT method(Body body) noexcept {
        return guarded(*iid, body);
    }
};

// A new object, its one reference given to a pointer to one of its interfaces.
template <class Object>
HRESULT createObject(REFIID wanted, void** object) noexcept {
    return guarded(wanted, [&] {
        auto made = ComPtr<Object>::adopt(new Object());
        HRESULT answer = made->QueryInterface(wanted, object);
        if (FAILED(answer)) raise(answer, L"The object has no such interface");
    });
}

}  // namespace win32
