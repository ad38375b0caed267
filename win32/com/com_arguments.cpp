#include "win32/com/com_arguments.h"

#include "win32/com/automation.h"

namespace win32 {

namespace {

// The variant type of a declared type, VT_EMPTY for what is left to the Automation library.
VARTYPE variantType(const TYPEDESC& type) {
    switch (type.vt) {
        case VT_SAFEARRAY:
            return VT_ARRAY | type.lptdesc->vt;
        case VT_PTR:
            // A pointer to an interface is the interface; widl writes IDispatch and IUnknown as named types.
            return type.lptdesc->vt == VT_USERDEFINED ? VARTYPE{VT_DISPATCH} : VARTYPE{VT_EMPTY};
        case VT_USERDEFINED:
            return VT_EMPTY;
        default:
            return type.vt;
    }
}

bool wrapsAround(VARIANT& number, VARTYPE wanted, LONG& wrapped) {
    Variant asDouble;
    bool isNumber = number.vt == VT_R4 || number.vt == VT_R8 || number.vt == VT_UI4 || number.vt == VT_UINT ||
                    number.vt == VT_CY || number.vt == VT_DECIMAL || number.vt == VT_I8 ||
                    number.vt == VT_UI8;
    if (wanted != VT_I4 || !isNumber) return false;
    if (FAILED(::VariantChangeType(&asDouble, &number, 0, VT_R8))) return false;
    if (asDouble.dblVal < 2147483648.0 || asDouble.dblVal > 4294967295.0) return false;
    wrapped = static_cast<LONG>(static_cast<ULONG>(asDouble.dblVal));
    return true;
}

bool isReferenceType(VARTYPE type) {
    return type == VT_DISPATCH || type == VT_UNKNOWN || (type & VT_ARRAY) != 0;
}

// The value in the wanted type; nothing given is its zero, empty text or null.
Variant converted(VARIANT& value, VARTYPE wanted) {
    Variant result;
    LONG wrapped;
    if (wrapsAround(value, wanted, wrapped)) {
        result = Variant(wrapped);
    } else if (isNothing(value) && isReferenceType(wanted)) {
        result.vt = wanted;
        result.byref = nullptr;
    } else if (isNothing(value)) {
        Variant empty;
        check(::VariantChangeType(&result, &empty, 0, wanted));
    } else {
        check(::VariantChangeType(&result, &value, VARIANT_LOCALBOOL, wanted));
    }
    return result;
}

template <class Number>
void store(void* place, Number number) {
    *static_cast<Number*>(place) = number;
}

// Stores a number in a variable of the caller's. False for what is no number.
bool storeNumber(VARTYPE type, void* place, const VARIANT& value) {
    switch (type) {
        case VT_UI1:
            store(place, value.bVal);
            return true;
        case VT_I2:
        case VT_BOOL:
            store(place, value.iVal);
            return true;
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
            store(place, value.lVal);
            return true;
        case VT_R4:
            store(place, value.fltVal);
            return true;
        case VT_R8:
        case VT_DATE:
            store(place, value.dblVal);
            return true;
    }
    return false;
}

// Moves a value into a variable of the caller's, whose old value is freed.
void moveTo(VARIANT& callers, Variant value) {
    if (callers.vt == (VT_BYREF | VT_VARIANT)) {
        ::VariantClear(callers.pvarVal);
        *callers.pvarVal = value.detach();
        return;
    }
    const VARTYPE type = callers.vt & ~VT_BYREF;
    Variant fitting = converted(value, type);
    if (storeNumber(type, callers.byref, fitting)) return;
    if (type == VT_BSTR) {
        ::SysFreeString(*callers.pbstrVal);
        *callers.pbstrVal = fitting.detach().bstrVal;
    } else if (type == VT_DISPATCH || type == VT_UNKNOWN) {
        if (*callers.ppunkVal) (*callers.ppunkVal)->Release();
        *callers.ppunkVal = fitting.detach().punkVal;
    } else {
        raise(DISP_E_TYPEMISMATCH, L"Type mismatch");
    }
}

}  // namespace

AdaptedArguments::AdaptedArguments(const FUNCDESC* operation, const DISPPARAMS& given)
    : arguments_(given.rgvarg, given.rgvarg + given.cArgs), adapted_(given) {
    adapted_.rgvarg = arguments_.data();
    if (!operation || given.cNamedArgs) return;
    // Arguments stand last first.
    UINT declared = operation->cParams;
    for (UINT i = 0; i < given.cArgs && i < declared; ++i) {
        adapt(operation->lprgelemdescParam[i], arguments_[given.cArgs - 1 - i]);
    }
}

void AdaptedArguments::adapt(const ELEMDESC& declared, VARIANT& argument) {
    const PARAMDESC& how = declared.paramdesc;
    bool isReference = declared.tdesc.vt == VT_PTR && (how.wParamFlags & PARAMFLAG_FOUT);
    VARTYPE type = variantType(isReference ? *declared.tdesc.lptdesc : declared.tdesc);
    if (type == VT_EMPTY) return;
    if (isReference) {
        adaptReference(type, (how.wParamFlags & PARAMFLAG_FIN) != 0, argument);
    } else {
        adaptValue(type, argument);
    }
}

void AdaptedArguments::adaptReference(VARTYPE type, bool isInput, VARIANT& argument) {
    if (argument.vt == (VT_BYREF | type)) return;
    Variant present;
    if (isInput) check(::VariantCopyInd(&present, &argument));
    // An argument that is no reference, such as an expression, gets no result back.
    bool getsResult = (argument.vt & VT_BYREF) != 0;
    variables_.push_back({isInput ? converted(present, type) : Variant(), getsResult ? argument : VARIANT()});
    Variant& value = variables_.back().value;
    if (!isInput) {
        value.vt = type;
        value.byref = nullptr;
    }
    argument.vt = VT_BYREF | type;
    argument.byref = &value.byref;
}

void AdaptedArguments::adaptValue(VARTYPE type, VARIANT& argument) {
    if (argument.vt == type || type == VT_VARIANT) return;
    Variant plain;
    check(::VariantCopyInd(&plain, &argument));
    variables_.push_back({converted(plain, type), VARIANT()});
    argument = variables_.back().value;
}

void AdaptedArguments::giveBack() {
    for (Variable& variable : variables_) {
        if (variable.callers.vt != VT_EMPTY) moveTo(variable.callers, std::move(variable.value));
    }
}

}  // namespace win32
