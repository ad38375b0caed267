// The registry service as its callers see it. Every operation throws a win32::Error when the library raises
// one.
#pragma once

#include <string>
#include <vector>

#include "helmkit.h"
#include "win32/com/com.h"

namespace helmkit {

// Hives cross as 32-bit numbers and are sign-extended to HKEY in a 64-bit process.
constexpr LONG HKCR = static_cast<LONG>(0x80000000);
constexpr LONG HKCU = static_cast<LONG>(0x80000001);
constexpr LONG HKLM = static_cast<LONG>(0x80000002);

class RegistryAccess {
  public:
    // `status` is a Win32 error code: 0 for a string, 2 for absent, 234 for a multi-string, 1630 for other
    // types.
    struct Value {
        std::wstring data;
        LONG status{};
    };

    RegistryAccess();

    Value ReadValue(LONG hive, const std::wstring& keyPath, const std::wstring& valueName);
    // The registry's type number, -1 when the value is missing.
    LONG ValueType(LONG hive, const std::wstring& keyPath, const std::wstring& valueName);
    // These three give a Win32 error code, 0 on success. They change nothing where the value's key, or the
    // key above the one to delete, is a registry link.
    LONG WriteValue(LONG hive, const std::wstring& keyPath, const std::wstring& valueName,
                    const std::wstring& data);
    LONG DeleteValue(LONG hive, const std::wstring& keyPath, const std::wstring& valueName);
    LONG DeleteKey(LONG hive, const std::wstring& keyPath);
    // Names in the registry's order; none when the key is missing.
    std::vector<std::wstring> EnumSubkeys(LONG hive, const std::wstring& keyPath);
    std::vector<std::wstring> EnumValues(LONG hive, const std::wstring& keyPath);
    // Registry-export text; empty when key or value is missing.
    win32::BString ExportKey(LONG hive, const std::wstring& keyPath);
    win32::BString ExportValue(LONG hive, const std::wstring& keyPath, const std::wstring& valueName);

  private:
    win32::ComPtr<IRegistryAccess> object_;
};

}  // namespace helmkit
