// The process's environment variables.
#pragma once

#include <string>

namespace win32 {

// Empty when the variable is not set.
std::wstring environmentVariable(const std::wstring& name);
void setEnvironmentVariable(const std::wstring& name, const std::wstring& value);

}  // namespace win32
