#pragma once

#include <memory>
#include <vector>

#include "helmkit/record.h"

namespace helmkit::server {

// IRecordList: records in the order of adding.
class RecordList : public win32::AutomationObject<IRecordList, &IID_IRecordList>, private Sequence {
  public:
    STDMETHODIMP AddRecord(IRecord** record) override;
    STDMETHODIMP get_Count(LONG* count) override;
    STDMETHODIMP get_Item(LONG position, IRecord** record) override;
    STDMETHODIMP get__NewEnum(IUnknown** enumerator) override;

  private:
    LONG length() override { return static_cast<LONG>(records_.size()); }
    win32::Variant itemAt(LONG position) override;
    IUnknown* owner() override { return static_cast<IRecordList*>(this); }

    std::shared_ptr<FieldNames> names_ = std::make_shared<FieldNames>();
    std::vector<win32::ComPtr<IRecord>> records_;
};

}  // namespace helmkit::server
