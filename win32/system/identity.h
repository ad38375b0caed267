// Who and where this process is, and how it was started.
#pragma once

#include <string>

namespace win32 {

// Empty where Windows cannot tell.
std::wstring computerName();
std::wstring userName();

// The whole command line, the program's name included.
std::wstring commandLine();

}  // namespace win32
