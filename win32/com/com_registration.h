// Registering the classes of a DLL.
#pragma once

#include "win32/com/com_module.h"

namespace win32 {

// DllRegisterServer: classes, class names and type library, for all users. A failure takes back what was
// written. DllUnregisterServer leaves none of it; that something is missing is no error.
HRESULT registerModule(const ComModule& module) noexcept;
HRESULT unregisterModule(const ComModule& module) noexcept;

}  // namespace win32
