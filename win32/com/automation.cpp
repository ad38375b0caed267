#include "win32/com/automation.h"

namespace win32 {

namespace {

const LCID englishUnitedStates = 0x0409;

// The headers ask for a value that may be written to; it is only read.
Variant converted(const VARIANT& value, VARTYPE type) {
    Variant result;
    check(::VariantChangeTypeEx(&result, const_cast<VARIANT*>(&value), englishUnitedStates, 0, type));
    return result;
}

}  // namespace

ComPtr<IDispatch> createByName(const wchar_t* programId) {
    CLSID clsid;
    ComPtr<IDispatch> object;
    if (FAILED(::CLSIDFromProgID(programId, &clsid))) return object;
    ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                       reinterpret_cast<void**>(object.out()));
    return object;
}

Variant propertyOf(IDispatch* object, const wchar_t* name) {
    BString spelled(name);
    BSTR names[] = {spelled.get()};
    DISPID id;
    check(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id));
    DISPPARAMS none = {};
    Variant value;
    // Not told in full, an exception comes back as DISP_E_EXCEPTION.
    check(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, value.out(), nullptr,
                         nullptr));
    return value;
}

LONG numberProperty(IDispatch* object, const wchar_t* name) {
    return converted(propertyOf(object, name), VT_I4).lVal;
}

std::wstring textProperty(IDispatch* object, const wchar_t* name) {
    return valueText(propertyOf(object, name));
}

bool isNothing(const VARIANT& value) {
    return value.vt == VT_EMPTY || value.vt == VT_NULL || value.vt == VT_ERROR;
}

std::wstring valueText(const VARIANT& value) {
    const bool leadsNowhere = (value.vt & VT_BYREF) && !value.byref;
    if (leadsNowhere || (value.vt & VT_TYPEMASK) == VT_RECORD)
        raise(DISP_E_TYPEMISMATCH, L"A value of this type has no text");
    Variant direct;
    check(::VariantCopyInd(&direct, const_cast<VARIANT*>(&value)));
    return isNothing(direct) ? std::wstring() : BString::copy(converted(direct, VT_BSTR).bstrVal);
}

VARIANT DispatchByReference::variant() {
    VARIANT argument = {};
    argument.vt = VT_BYREF | VT_DISPATCH;
    argument.ppdispVal = &object_;
    return argument;
}

}  // namespace win32
