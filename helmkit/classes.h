// The classes that the library offers by name.
#pragma once

#include "win32/com/com_module.h"

namespace helmkit {

const win32::ComModule& comModule();

}  // namespace helmkit
