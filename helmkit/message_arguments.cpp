#include "helmkit/message_arguments.h"

#include "win32/com/automation.h"

namespace helmkit {

namespace {

// The size of an element of a type, 0 for a type without a text.
UINT sizeOfElement(VARTYPE type) {
    switch (type) {
        case VT_I1:
        case VT_UI1:
            return sizeof(BYTE);
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
            return sizeof(SHORT);
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_R4:
        case VT_ERROR:
            return sizeof(LONG);
        case VT_I8:
        case VT_UI8:
        case VT_R8:
        case VT_CY:
        case VT_DATE:
            return sizeof(LONGLONG);
        case VT_DECIMAL:
            return sizeof(DECIMAL);
        case VT_BSTR:
        case VT_DISPATCH:
        case VT_UNKNOWN:
            return sizeof(void*);
        case VT_VARIANT:
            return sizeof(VARIANT);
    }
    return 0;
}

// What an array bears whose elements lead to something else.
USHORT markOf(VARTYPE type) {
    switch (type) {
        case VT_BSTR:
            return FADF_BSTR;
        case VT_DISPATCH:
            return FADF_DISPATCH;
        case VT_UNKNOWN:
            return FADF_UNKNOWN;
        case VT_VARIANT:
            return FADF_VARIANT;
    }
    return 0;
}

void checkElements(SAFEARRAY* array, VARTYPE type) {
    const USHORT mark = markOf(type);
    if (sizeOfElement(type) != ::SafeArrayGetElemsize(array) || (array->fFeatures & mark) != mark)
        win32::raise(DISP_E_TYPEMISMATCH, L"The arguments are of a type that has no text");
}

// Keeps the elements where they are: the text of an object is its own business.
class LockedArray {
  public:
    explicit LockedArray(SAFEARRAY* array) : array_(array) { win32::check(::SafeArrayLock(array)); }
    ~LockedArray() { ::SafeArrayUnlock(array_); }
    LockedArray(const LockedArray&) = delete;
    LockedArray& operator=(const LockedArray&) = delete;

  private:
    SAFEARRAY* array_;
};

std::wstring elementText(SAFEARRAY* array, VARTYPE type, LONG position) {
    VARIANT element;
    element.vt = VT_BYREF | type;
    win32::check(::SafeArrayPtrOfIndex(array, &position, &element.byref));
    return win32::valueText(element);
}

std::vector<std::wstring> elementTexts(SAFEARRAY* array, VARTYPE type) {
    std::vector<std::wstring> texts;
    if (!array) return texts;
    if (::SafeArrayGetDim(array) != 1) win32::raise(E_INVALIDARG, L"The arguments must be a list");
    checkElements(array, type);
    LockedArray locked(array);
    LONG first, last;
    win32::check(::SafeArrayGetLBound(array, 1, &first));
    win32::check(::SafeArrayGetUBound(array, 1, &last));
    for (LONG i = first; i <= last; ++i) texts.push_back(elementText(array, type, i));
    return texts;
}

}  // namespace

std::vector<std::wstring> messageArguments(const VARIANT& arguments) {
    const bool isReference = arguments.vt == (VT_BYREF | VT_VARIANT) && arguments.pvarVal;
    const VARIANT& direct = isReference ? *arguments.pvarVal : arguments;
    if ((direct.vt & VT_ARRAY) && (!(direct.vt & VT_BYREF) || direct.pparray)) {
        SAFEARRAY* array = direct.vt & VT_BYREF ? *direct.pparray : direct.parray;
        return elementTexts(array, direct.vt & VT_TYPEMASK);
    }
    if (win32::isNothing(direct)) return {};
    return {win32::valueText(direct)};
}

}  // namespace helmkit
