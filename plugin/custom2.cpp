#include "plugin/custom2.h"

namespace plugin {

STDMETHODIMP CCustom2::Init(IDispatch**) {
    return S_OK;
}

}  // namespace plugin
