#pragma once

#include <string>

#include "helmkit.h"
#include "win32/com/com_server.h"
#include "win32/registry/registry.h"

namespace helmkit::server {

// IRegistryAccess. Reading: absent values and refused names are not errors; anything else is raised. Writing
// and deleting: wrong arguments are raised; everything else is returned as a Win32 error code. Neither
// follows a registry link in the key of a value or in the key above a key to delete (win32::linkRefused).
// Reading does.
class RegistryAccess : public win32::AutomationObject<IRegistryAccess, &IID_IRegistryAccess> {
  public:
    STDMETHODIMP ReadValue(LONG hive, BSTR keyPath, BSTR valueName, BSTR* data, LONG* status) override;
    STDMETHODIMP WriteValue(LONG hive, BSTR keyPath, BSTR valueName, BSTR data, LONG* status) override;
    STDMETHODIMP DeleteValue(LONG hive, BSTR keyPath, BSTR valueName, LONG* status) override;
    STDMETHODIMP EnumSubkeys(LONG hive, BSTR keyPath, IKeyedList** names) override;
    STDMETHODIMP EnumValues(LONG hive, BSTR keyPath, IKeyedList** names) override;
    STDMETHODIMP DeleteKey(LONG hive, BSTR keyPath, LONG* status) override;
    STDMETHODIMP ExportKey(LONG* hive, BSTR* keyPath, BSTR* text) override;
    STDMETHODIMP ExportValue(LONG hive, BSTR keyPath, BSTR valueName, BSTR* text) override;
    STDMETHODIMP ValueType(LONG hive, BSTR keyPath, BSTR valueName, LONG* type) override;

  private:
    using ListNames = LONG (*)(const win32::RegistryKey&, std::vector<std::wstring>&);

    LONG openForReading(HKEY hive, std::wstring_view path);
    // Reads into value_.
    LONG query(LONG hive, BSTR keyPath, BSTR valueName);
    void listNames(LONG hive, BSTR keyPath, IKeyedList** names, ListNames list);
    void forgetKey() { key_.close(); }

    // The key read last stays open, for whoever reads its values one by one.
    win32::RegistryKey key_;
    HKEY keyHive_ = nullptr;
    std::wstring keyPath_;
    // Of the last query: their room is used again.
    std::wstring name_;
    win32::RegistryValue value_;
};

}  // namespace helmkit::server
