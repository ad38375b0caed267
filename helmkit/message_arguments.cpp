#include "helmkit/message_arguments.h"

#include <algorithm>
#include <iterator>

#include "win32/com/automation.h"

namespace helmkit {

namespace {

// The types that have a text, and what an array bears whose elements lead to something else.
const struct {
    VARTYPE type;
    size_t size;  // of an element, in bytes
    USHORT mark = 0;
} elementTypes[] = {
    {VT_I1, 1},
    {VT_UI1, 1},
    {VT_I2, 2},
    {VT_UI2, 2},
    {VT_BOOL, 2},
    {VT_I4, 4},
    {VT_UI4, 4},
    {VT_INT, 4},
    {VT_UINT, 4},
    {VT_R4, 4},
    {VT_ERROR, 4},
    {VT_I8, 8},
    {VT_UI8, 8},
    {VT_R8, 8},
    {VT_CY, 8},
    {VT_DATE, 8},
    {VT_DECIMAL, sizeof(DECIMAL)},
    {VT_BSTR, sizeof(void*), FADF_BSTR},
    {VT_DISPATCH, sizeof(void*), FADF_DISPATCH},
    {VT_UNKNOWN, sizeof(void*), FADF_UNKNOWN},
    {VT_VARIANT, sizeof(VARIANT), FADF_VARIANT},
};

bool haveText(SAFEARRAY* array, VARTYPE type) {
    const auto* row = std::find_if(std::begin(elementTypes), std::end(elementTypes),
                                   [&](const auto& known) { return known.type == type; });
    return row != std::end(elementTypes) && row->size == ::SafeArrayGetElemsize(array) &&
           (array->fFeatures & row->mark) == row->mark;
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
    if (!haveText(array, type))
        win32::raise(DISP_E_TYPEMISMATCH, L"The arguments are of a type that has no text");
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
