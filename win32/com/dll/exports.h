// The four functions that a DLL with COM classes exports. A DLL compiles win32/com/dll/exports.cpp and
// defines this:
#pragma once

#include "win32/com/com_module.h"

namespace win32 {

const ComModule& moduleOfThisDll();

}  // namespace win32
