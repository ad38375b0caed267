#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "helmkit.h"
#include "helmkit/enum_variant.h"
#include "win32/com/com_server.h"

namespace helmkit::server {

// The names of the fields, each kept once for all records of a list.
using FieldNames = std::set<std::wstring, std::less<>>;

// IRecord: a name and named fields. A field is no object of its own until somebody asks for it: lists hold
// thousands of records.
class Record : public win32::AutomationObject<IRecord, &IID_IRecord>, private Sequence {
  public:
    Record() : Record(std::make_shared<FieldNames>()) {}
    explicit Record(std::shared_ptr<FieldNames> names) : names_(std::move(names)) {}

    STDMETHODIMP SetName(BSTR name) override;
    STDMETHODIMP get_Name(BSTR* name) override;
    STDMETHODIMP SetField(BSTR name, VARIANT value) override;
    STDMETHODIMP Field(BSTR name, IField** field) override;
    STDMETHODIMP get_Count(LONG* count) override;
    STDMETHODIMP get__NewEnum(IUnknown** enumerator) override;

    // For the fields, which stand for their record's values of one name.
    std::vector<const VARIANT*> valuesOf(const std::wstring* name) const;
    const VARIANT* firstValueOf(const std::wstring* name) const;  // null when there is none
    void addValue(const std::wstring* name, const VARIANT& value);

  private:
    // The values of all fields, in the order of adding; those of one name are one field.
    struct Entry {
        const std::wstring* name;  // in names_
        win32::Variant value;
    };

    LONG length() override { return static_cast<LONG>(fieldNames().size()); }
    win32::Variant itemAt(LONG position) override;
    IUnknown* owner() override { return static_cast<IRecord*>(this); }

    const std::wstring* knownName(std::wstring_view name);
    std::vector<const std::wstring*> fieldNames() const;
    win32::ComPtr<IField> newField(const std::wstring* name);

    std::wstring name_;
    std::shared_ptr<FieldNames> names_;
    std::vector<Entry> entries_;
};

}  // namespace helmkit::server
