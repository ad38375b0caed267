#include "helmkit/message_arguments.h"

#include "win32/com/automation.h"

namespace helmkit {

namespace {

// What an array of a type is made of: the size of its elements and, for those that lead to something else,
// the mark that the array bears.
const struct ElementType {
    VARTYPE type;
    UINT size;
    USHORT mark;
} elementTypes[] = {
    {VT_I1, 1, 0},
    {VT_UI1, 1, 0},
    {VT_I2, 2, 0},
    {VT_UI2, 2, 0},
    {VT_BOOL, 2, 0},
    {VT_I4, 4, 0},
    {VT_UI4, 4, 0},
    {VT_INT, 4, 0},
    {VT_UINT, 4, 0},
    {VT_R4, 4, 0},
    {VT_ERROR, 4, 0},
    {VT_I8, 8, 0},
    {VT_UI8, 8, 0},
    {VT_R8, 8, 0},
    {VT_CY, 8, 0},
    {VT_DATE, 8, 0},
    {VT_DECIMAL, sizeof(DECIMAL), 0},
    {VT_BSTR, sizeof(BSTR), FADF_BSTR},
    {VT_DISPATCH, sizeof(IDispatch*), FADF_DISPATCH},
    {VT_UNKNOWN, sizeof(IUnknown*), FADF_UNKNOWN},
    {VT_VARIANT, sizeof(VARIANT), FADF_VARIANT},
};

void checkElements(SAFEARRAY* array, VARTYPE type) {
    for (const ElementType& known : elementTypes) {
        const bool isMarked = !known.mark || (array->fFeatures & known.mark);
        if (known.type == type && known.size == ::SafeArrayGetElemsize(array) && isMarked) return;
    }
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
    LONG first = 0, last = -1;
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
