#pragma once

#include "helmkit.h"
#include "win32/com/com_server.h"

namespace helmkit::server {

// ISystemServices.
class SystemServices : public win32::AutomationObject<ISystemServices, &IID_ISystemServices> {
  public:
    STDMETHODIMP FormatMessage(BSTR text, VARIANT arguments, BSTR* result) override;
    STDMETHODIMP ExpandEnvironment(BSTR text, BSTR* result) override;
    STDMETHODIMP GetFileVersionInfo(BSTR path, IVersionInfo** info) override;
    STDMETHODIMP GetWindowsFolder(BSTR* path) override;
    STDMETHODIMP GetOSVersion(BSTR* version, BSTR* servicePack, LONG* platform, LONG* major, LONG* minor,
                              LONG* build) override;
    STDMETHODIMP IsEmptyBytes(SAFEARRAY** bytes, VARIANT_BOOL* empty) override;
    STDMETHODIMP NewUniqueId(BSTR* id) override;
    STDMETHODIMP GetTempFolder(BSTR* path) override;
    STDMETHODIMP GetTempFileName(BSTR prefix, BSTR* path) override;
    STDMETHODIMP XmlEscape(BSTR text, BSTR* escaped) override;
    STDMETHODIMP EncodeBinaryText(BSTR bytes, BSTR* text) override;
    STDMETHODIMP PumpEvents() override;
};

}  // namespace helmkit::server
