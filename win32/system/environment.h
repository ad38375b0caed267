// The process's environment variables.
#pragma once

#include <optional>
#include <string>

namespace win32 {

// None when the variable is not set.
std::optional<std::wstring> findEnvironmentVariable(const std::wstring& name);
// Empty when the variable is not set.
std::wstring environmentVariable(const std::wstring& name);
void setEnvironmentVariable(const std::wstring& name, const std::wstring& value);

}  // namespace win32
