#pragma once

#include "helmkit.h"
#include "win32/com/com_server.h"
#include "win32/files/version_resource.h"

namespace helmkit::server {

// IVersionInfo: made by SystemServices for one file.
class VersionInfo : public win32::AutomationObject<IVersionInfo, &IID_IVersionInfo> {
  public:
    explicit VersionInfo(const std::wstring& path) : resource_(path) {}

    STDMETHODIMP Exists(BSTR name, VARIANT_BOOL* present) override;
    STDMETHODIMP get_Item(BSTR name, BSTR* text) override;
    STDMETHODIMP QueryValue(BSTR name, BSTR* text) override;

  private:
    win32::VersionResource resource_;
};

}  // namespace helmkit::server
