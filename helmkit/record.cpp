#include "helmkit/record.h"

#include <algorithm>

#include "helmkit/field.h"

namespace helmkit::server {

namespace {

// A string as it is, anything else as a 32-bit integer; what is neither is thrown.
win32::Variant fieldValue(const VARIANT& given) {
    win32::Variant value;
    win32::check(::VariantCopyInd(&value, const_cast<VARIANT*>(&given)));
    if (value.vt == VT_BSTR) return value;
    if (value.vt == VT_EMPTY || value.vt == VT_NULL)
        win32::raise(DISP_E_TYPEMISMATCH, L"A field needs a value");
    win32::check(::VariantChangeType(&value, &value, 0, VT_I4));
    return value;
}

}  // namespace

STDMETHODIMP Record::SetName(BSTR name) {
    return method([&] { name_ = win32::BString::view(name); });
}

STDMETHODIMP Record::get_Name(BSTR* name) {
    return method([&] { win32::result(name) = win32::BString(name_).release(); });
}

STDMETHODIMP Record::SetField(BSTR name, VARIANT value) {
    return method([&] {
        win32::Variant converted = fieldValue(value);
        const std::wstring* known = knownName(win32::BString::view(name));
        auto isOfField = [&](const Entry& entry) { return entry.name == known; };
        auto present = std::find_if(entries_.begin(), entries_.end(), isOfField);
        if (present == entries_.end()) {
            // Startup entries have five to seven fields.
            if (entries_.empty()) entries_.reserve(7);
            entries_.push_back({known, std::move(converted)});
            return;
        }
        present->value = std::move(converted);
        entries_.erase(std::remove_if(present + 1, entries_.end(), isOfField), entries_.end());
    });
}

STDMETHODIMP Record::Field(BSTR name, IField** field) {
    return method([&] {
        win32::result(field);
        std::wstring_view wanted = win32::BString::view(name);
        auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const Entry& entry) { return *entry.name == wanted; });
        if (found == entries_.end()) win32::raise(E_INVALIDARG, L"The record has no such field");
        *field = newField(found->name).release();
    });
}

STDMETHODIMP Record::get_Count(LONG* count) {
    return method([&] { win32::result(count) = length(); });
}

STDMETHODIMP Record::get__NewEnum(IUnknown** enumerator) {
    return method([&] { win32::result(enumerator) = newEnumerator(*this).release(); });
}

const std::wstring* Record::knownName(std::wstring_view name) {
    auto known = names_->find(name);
    return known == names_->end() ? &*names_->emplace(name).first : &*known;
}

const VARIANT* Record::firstValueOf(const std::wstring* name) const {
    for (const Entry& entry : entries_) {
        if (entry.name == name) return &entry.value;
    }
    return nullptr;
}

std::vector<const VARIANT*> Record::valuesOf(const std::wstring* name) const {
    std::vector<const VARIANT*> values;
    for (const Entry& entry : entries_) {
        if (entry.name == name) values.push_back(&entry.value);
    }
    return values;
}

void Record::addValue(const std::wstring* name, const VARIANT& value) {
    entries_.push_back({name, fieldValue(value)});
}

win32::Variant Record::itemAt(LONG position) {
    win32::Variant item;
    item.pdispVal = newField(fieldNames()[position]).release();
    item.vt = VT_DISPATCH;
    return item;
}

std::vector<const std::wstring*> Record::fieldNames() const {
    std::vector<const std::wstring*> names;
    for (const Entry& entry : entries_) {
        if (std::find(names.begin(), names.end(), entry.name) == names.end()) names.push_back(entry.name);
    }
    return names;
}

win32::ComPtr<IField> Record::newField(const std::wstring* name) {
    return win32::ComPtr<IField>::adopt(new server::Field(this, name));
}

}  // namespace helmkit::server
