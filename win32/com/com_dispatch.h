// IDispatch from the type library.
#pragma once

#include "win32/base/platform.h"

namespace win32 {

// IDispatch over the description of the interface in the module's type library.
//
// Scripting languages hand over [out] arguments as variants by reference and numbers in any type; the call
// gets typed pointers and converted values all the same, and the results are converted back.
HRESULT dispatchIds(REFIID iid, LPOLESTR* names, UINT count, DISPID* ids) noexcept;
HRESULT dispatchInvoke(REFIID iid, IDispatch* object, DISPID id, WORD flags, DISPPARAMS* parameters,
                       VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) noexcept;
HRESULT dispatchTypeInfo(REFIID iid, UINT index, ITypeInfo** info) noexcept;

}  // namespace win32
