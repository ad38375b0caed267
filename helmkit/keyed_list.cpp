#include "helmkit/keyed_list.h"

namespace helmkit::server {

namespace {

win32::Variant copyOf(const VARIANT& value) {
    win32::Variant copy;
    // The function only reads the source, but was declared before that could be said.
    win32::check(::VariantCopyInd(&copy, const_cast<VARIANT*>(&value)));
    return copy;
}

}  // namespace

void KeyedList::append(std::wstring name) {
    win32::Variant item(name);
    entries_.push_back({std::move(name), std::move(item)});
}

STDMETHODIMP KeyedList::Add(VARIANT item, BSTR key) {
    return method([&] {
        std::wstring_view text = win32::BString::view(key);
        if (!find(text)) entries_.push_back({std::wstring(text), copyOf(item)});
    });
}

STDMETHODIMP KeyedList::Exists(BSTR key, VARIANT_BOOL* present) {
    return method(
        [&] { win32::result(present) = find(win32::BString::view(key)) ? VARIANT_TRUE : VARIANT_FALSE; });
}

STDMETHODIMP KeyedList::get_Item(VARIANT keyOrPosition, VARIANT* item) {
    return method([&] {
        if (!item) win32::raise(E_POINTER, L"No place for the result was given");
        ::VariantInit(item);
        win32::Variant copy = copyOf(entryOf(keyOrPosition).item);
        std::swap(*item, static_cast<VARIANT&>(copy));
    });
}

STDMETHODIMP KeyedList::get_Count(LONG* count) {
    return method([&] { win32::result(count) = length(); });
}

STDMETHODIMP KeyedList::get__NewEnum(IUnknown** enumerator) {
    return method([&] { win32::result(enumerator) = newEnumerator(*this).release(); });
}

win32::Variant KeyedList::itemAt(LONG position) {
    return copyOf(entries_[position].item);
}

const KeyedList::Entry* KeyedList::find(std::wstring_view key) {
    // The first of several equal keys stays.
    for (; indexed_ < entries_.size(); ++indexed_) index_.emplace(entries_[indexed_].key, indexed_);
    auto found = index_.find(key);
    return found == index_.end() ? nullptr : &entries_[found->second];
}

const KeyedList::Entry& KeyedList::entryOf(std::wstring_view key) {
    const Entry* entry = find(key);
    if (!entry) win32::raise(E_INVALIDARG, L"The list has no item of that key");
    return *entry;
}

const KeyedList::Entry& KeyedList::entryOf(const VARIANT& keyOrPosition) {
    if (keyOrPosition.vt == VT_BSTR) return entryOf(win32::BString::view(keyOrPosition.bstrVal));
    win32::Variant asked = copyOf(keyOrPosition);
    if (asked.vt == VT_BSTR) return entryOf(win32::BString::view(asked.bstrVal));
    win32::check(::VariantChangeType(&asked, &asked, 0, VT_I4));
    if (asked.lVal < 1 || asked.lVal > length()) win32::raise(DISP_E_BADINDEX, L"The list has no item there");
    return entries_[asked.lVal - 1];
}

}  // namespace helmkit::server
