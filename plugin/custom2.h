#pragma once

#include "qlncustom.h"
#include "win32/com/com_server.h"

namespace plugin {

// ICCustom2: the plug-in that comes with the program. It leaves the logger as it is.
class CCustom2 : public win32::AutomationObject<ICCustom2, &IID_ICCustom2> {
  public:
    STDMETHODIMP Init(IDispatch** logger) override;
};

}  // namespace plugin
