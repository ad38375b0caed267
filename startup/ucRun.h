// The general startup programs: the values of the Run-family registry keys.
#pragma once

#include "startup/StartupListControl.h"

namespace startup {

// True for a program that Windows needs: made by exactly "Microsoft Corporation", and one of the known files
// in its known folder. The list differs between the NT family and Windows 95, 98 and Me. Both folders are
// lower-cased and end in a backslash.
bool isProtectedProgram(const std::wstring& fileName, const std::wstring& manufacturer,
                        const std::wstring& winDir, const std::wstring& sysDir);

class ucRun : public StartupListControl {
  public:
    explicit ucRun(HWND parent);

  protected:
    void EnumItems(StartupItemList& list) override;
    const std::wstring& iconField() const override { return field::Icon; }
    void deleteRow(int row) override;
    Deletion deleteItem(const StartupItem& item, const std::wstring& rowText) override;

  private:
    // The ordinary builder: a record for every value of the key.
    void FillItemInfo(const std::vector<std::wstring>& values, StartupItemList& list, LONG hive,
                      const std::wstring& keyPath);
    // The builder for the policy key, with a naming rule of its own. It has no error trap: an error in it
    // ends the enumeration.
    void fillPolicyItemInfo(StartupItemList& list, LONG hive);
    void addItem(StartupItemList& list, LONG hive, const std::wstring& keyPath, const std::wstring& valueName,
                 const std::wstring& name, const std::wstring& file, const std::wstring& manufacturer) const;

    std::wstring winDir_, sysDir_;
};

}  // namespace startup
