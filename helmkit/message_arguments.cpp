#include "helmkit/message_arguments.h"

#include "win32/com/automation.h"

namespace helmkit {

namespace {

std::wstring elementText(SAFEARRAY* array, VARTYPE type, LONG position) {
    win32::Variant element;
    // Elements of an array of variants are variants, others go into the variant's value.
    void* place = type == VT_VARIANT ? static_cast<void*>(&element) : &element.byref;
    win32::check(::SafeArrayGetElement(array, &position, place));
    if (type != VT_VARIANT) element.vt = type;
    return win32::valueText(element);
}

std::vector<std::wstring> elementTexts(SAFEARRAY* array, VARTYPE type) {
    std::vector<std::wstring> texts;
    if (!array) return texts;
    if (::SafeArrayGetDim(array) != 1) win32::raise(E_INVALIDARG, L"The arguments must be a list");
    LONG first = 0, last = -1;
    win32::check(::SafeArrayGetLBound(array, 1, &first));
    win32::check(::SafeArrayGetUBound(array, 1, &last));
    for (LONG i = first; i <= last; ++i) texts.push_back(elementText(array, type, i));
    return texts;
}

}  // namespace

std::vector<std::wstring> messageArguments(const VARIANT& arguments) {
    const VARIANT& direct = arguments.vt == (VT_BYREF | VT_VARIANT) ? *arguments.pvarVal : arguments;
    if (direct.vt & VT_ARRAY) {
        SAFEARRAY* array = direct.vt & VT_BYREF ? *direct.pparray : direct.parray;
        return elementTexts(array, direct.vt & VT_TYPEMASK);
    }
    if (win32::isNothing(direct)) return {};
    return {win32::valueText(direct)};
}

}  // namespace helmkit
