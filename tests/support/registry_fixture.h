// Hives of a test's own: while the fixture lives, HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER and HKEY_CLASSES_ROOT
// of this process are fresh, empty keys, which go away with it.
#pragma once

#include <string>
#include <string_view>

#include "win32/base/handle.h"

class RegistryFixture {
  public:
    RegistryFixture();
    ~RegistryFixture();
    RegistryFixture(const RegistryFixture&) = delete;
    RegistryFixture& operator=(const RegistryFixture&) = delete;

    // Where the fixture's own hives "machine", "user" and "classes" stand, below the real HKEY_CURRENT_USER.
    static std::wstring name();

    // Makes the key (and those above it) if it is missing.
    static void makeKey(HKEY hive, const std::wstring& path);
    static bool hasKey(HKEY hive, const std::wstring& path);

    // Sets a value, making its key: text with its terminator, or any bytes under any type.
    static void setString(HKEY hive, const std::wstring& path, const std::wstring& name,
                          const std::wstring& text, DWORD type = REG_SZ);
    static void setNumber(HKEY hive, const std::wstring& path, const std::wstring& name, DWORD number);
    static void setBytes(HKEY hive, const std::wstring& path, const std::wstring& name, DWORD type,
                         std::string_view bytes);
    // By the native calls, which take counted names: the name may hold NULs.
    static void setCounted(HKEY hive, const std::wstring& path, std::wstring_view name, DWORD type,
                           std::string_view bytes);
    static void makeCountedKey(HKEY hive, const std::wstring& path, std::wstring_view name);
    // Takes away a key without subkeys, or a link itself.
    static void deleteKey(HKEY hive, const std::wstring& path);
    // Takes away all subkeys, whatever their names.
    static void deleteBelow(HKEY hive, const std::wstring& path);
    // A key that leads to another one of the fixture's, which need not be there.
    static void makeLink(HKEY hive, const std::wstring& path, HKEY targetHive,
                         const std::wstring& targetPath);

    // The stored bytes; fails the test when the value is missing.
    static std::string bytes(HKEY hive, const std::wstring& path, const std::wstring& name,
                             DWORD* type = nullptr);
    static bool hasValue(HKEY hive, const std::wstring& path, const std::wstring& name);
    static DWORD valueCount(HKEY hive, const std::wstring& path);

  private:
    win32::OwnedKey base_, machine_, user_, classes_;
};
