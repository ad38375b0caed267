#pragma once

#include "helmkit/record.h"

namespace helmkit::server {

// IField: the values of one name in one record.
class Field : public win32::AutomationObject<IField, &IID_IField> {
  public:
    Field(Record* record, const std::wstring* name) : record_(record), name_(name) {}

    STDMETHODIMP get_Name(BSTR* name) override;
    STDMETHODIMP Add(VARIANT value) override;
    STDMETHODIMP get_Count(LONG* count) override;
    STDMETHODIMP get_Item(LONG position, VARIANT* value) override;
    STDMETHODIMP get_Value(VARIANT* value) override;

  private:
    win32::ComPtr<Record> record_;
    const std::wstring* name_;  // belongs to the record's names
};

}  // namespace helmkit::server
