#pragma once

#include "helmkit.h"
#include "win32/com/com_server.h"

namespace helmkit::server {

// IFileServices.
class FileServices : public win32::AutomationObject<IFileServices, &IID_IFileServices> {
  public:
    STDMETHODIMP CreateFolder(BSTR path) override;
    STDMETHODIMP FileExists(BSTR path, VARIANT_BOOL* exists) override;
    STDMETHODIMP ReadTextFile(BSTR path, BSTR* text) override;
    STDMETHODIMP WriteTextFile(BSTR path, BSTR text) override;
    STDMETHODIMP ReadFileBytes(BSTR path, SAFEARRAY** bytes) override;
};

}  // namespace helmkit::server
