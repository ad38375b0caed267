#include "win32/registry/trusted_environment.h"

#include "win32/base/utf16_bytes.h"
#include "win32/registry/registry.h"
#include "win32/system/desktop.h"
#include "win32/system/environment.h"
#include "win32/system/system.h"

namespace win32 {

namespace {

// Empty for what is not a REG_SZ: a reference to a variable would be one to an untrusted one.
std::wstring storedString(const RegistryKey& key, const wchar_t* name) {
    RegistryValue value;
    if (key.query(name, value) != ERROR_SUCCESS || value.type != REG_SZ) return {};
    const std::wstring text = unitsOf(value.data);
    return text.substr(0, text.find(L'\0'));
}

void setFolder(const RegistryKey& key, const wchar_t* variable, const wchar_t* name,
               const wchar_t* otherName) {
    const std::wstring folder = storedString(key, name);
    setEnvironmentVariable(variable, folder.empty() ? storedString(key, otherName) : folder);
}

}  // namespace

void setTrustedEnvironment() {
    const std::wstring windows = windowsFolder();
    setEnvironmentVariable(L"windir", windows);
    if (isNtFamily()) {
        setEnvironmentVariable(L"SystemRoot", windows);
        setEnvironmentVariable(L"SystemDrive", windows.substr(0, 2));
    }
    RegistryKey key;
    key.open(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion", KEY_QUERY_VALUE);
    setFolder(key, L"ProgramFiles", L"ProgramFilesDir", L"ProgramW6432Dir");
    setFolder(key, L"CommonProgramFiles", L"CommonFilesDir", L"CommonW6432Dir");
}

}  // namespace win32
