// The version of a program file.
#pragma once

#include <string>

namespace win32 {

// The numbers in its version resource, "5.1.2600.5512"; empty when it has none.
std::wstring fileVersion(const std::wstring& path);

}  // namespace win32
