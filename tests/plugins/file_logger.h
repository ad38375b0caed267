// A logger that offers IDispatch and nothing more, as one written in a scripting language would.
#pragma once

#include "win32/com/com.h"

// Writes lines `level|source|code|text` in UTF-8 to replaced.log beside this DLL.
win32::ComPtr<IDispatch> newFileLogger();
