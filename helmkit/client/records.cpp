#include "helmkit/client/records.h"

#include "win32/com/in_string.h"

namespace helmkit {

using win32::BString;
using win32::check;
using win32::ComPtr;
using win32::InString;
using win32::Variant;

KeyedList::KeyedList() : object_(win32::create<IKeyedList>(CLSID_KeyedList, IID_IKeyedList)) {}

void KeyedList::Add(const std::wstring& item, const std::wstring& key) {
    check(object_->Add(InString(item).variant(), InString(key).get()));
}

std::optional<std::wstring> KeyedList::find(const std::wstring& key) const {
    InString asked(key);
    VARIANT_BOOL present = VARIANT_FALSE;
    check(object_->Exists(asked.get(), &present));
    if (present == VARIANT_FALSE) return {};
    Variant item;
    check(object_->get_Item(asked.variant(), item.out()));
    return std::wstring(BString::view(item.bstrVal));
}

std::wstring Record::Name() const {
    BString name;
    check(object_->get_Name(name.out()));
    return name.text();
}

void Record::SetName(const std::wstring& name) {
    check(object_->SetName(InString(name).get()));
}

void Record::SetField(const std::wstring& name, const std::wstring& value) {
    check(object_->SetField(InString(name).get(), InString(value).variant()));
}

void Record::SetField(const std::wstring& name, LONG value) {
    check(object_->SetField(InString(name).get(), Variant(value)));
}

Variant Record::value(const std::wstring& name) const {
    ComPtr<IField> field;
    check(object_->Field(InString(name).get(), field.out()));
    Variant value;
    check(field->get_Value(value.out()));
    return value;
}

std::wstring Record::text(const std::wstring& name) const {
    Variant found = value(name);
    return std::wstring(found.vt == VT_BSTR ? BString::view(found.bstrVal) : std::wstring_view());
}

LONG Record::number(const std::wstring& name) const {
    Variant found = value(name);
    return found.vt == VT_I4 ? found.lVal : 0;
}

RecordList::RecordList() : object_(win32::create<IRecordList>(CLSID_RecordList, IID_IRecordList)) {}

Record RecordList::AddRecord() {
    ComPtr<IRecord> record;
    check(object_->AddRecord(record.out()));
    return Record(record);
}

std::vector<Record> RecordList::records() const {
    std::vector<Record> result;
    ComPtr<IUnknown> walker;
    check(object_->get__NewEnum(walker.out()));
    auto items = walker.as<IEnumVARIANT>(IID_IEnumVARIANT);
    if (!items) win32::raise(E_NOINTERFACE, L"The list cannot be walked");
    for (;;) {
        Variant item;
        ULONG fetched;
        check(items->Next(1, &item, &fetched));
        if (fetched != 1) return result;
        ComPtr<IRecord> record;
        check(item.pdispVal->QueryInterface(IID_IRecord, reinterpret_cast<void**>(record.out())));
        result.emplace_back(record);
    }
}

}  // namespace helmkit
