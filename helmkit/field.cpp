#include "helmkit/field.h"

namespace helmkit::server {

namespace {

void copyTo(VARIANT* result, const VARIANT& value) {
    if (!result) win32::raise(E_POINTER, L"No place for the result was given");
    ::VariantInit(result);
    win32::check(::VariantCopy(result, const_cast<VARIANT*>(&value)));
}

}  // namespace

STDMETHODIMP Field::get_Name(BSTR* name) {
    return method([&] { win32::result(name) = win32::BString(*name_).release(); });
}

STDMETHODIMP Field::Add(VARIANT value) {
    return method([&] { record_->addValue(name_, value); });
}

STDMETHODIMP Field::get_Count(LONG* count) {
    return method([&] { win32::result(count) = static_cast<LONG>(record_->valuesOf(name_).size()); });
}

STDMETHODIMP Field::get_Item(LONG position, VARIANT* value) {
    return method([&] {
        auto values = record_->valuesOf(name_);
        bool isThere = position >= 1 && static_cast<size_t>(position) <= values.size();
        if (!isThere) win32::raise(DISP_E_BADINDEX, L"The field has no value there");
        copyTo(value, *values[position - 1]);
    });
}

STDMETHODIMP Field::get_Value(VARIANT* value) {
    return method([&] {
        const VARIANT* first = record_->firstValueOf(name_);
        copyTo(value, first ? *first : win32::Variant());
    });
}

}  // namespace helmkit::server
