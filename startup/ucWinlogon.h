// The Winlogon notification packages: libraries that the logon process of the NT family calls on its events.
#pragma once

#include "startup/StartupListControl.h"

namespace startup {

class ucWinlogon : public StartupListControl {
  public:
    explicit ucWinlogon(HWND parent);

    // The events that a package asks for, in a fixed order, joined by ", "; empty for none. Nothing shows it.
    static std::wstring eventsSummary(const std::wstring& subkey);

  protected:
    void EnumItems(StartupItemList& list) override;
    const std::wstring& iconField() const override { return field::GridIcon; }
    void deleteRow(int row) override;
    Deletion deleteItem(const StartupItem& item, const std::wstring& rowText) override;

  private:
    void FillItemInfo(const std::vector<std::wstring>& subkeys, StartupItemList& list);
    void addItem(StartupItemList& list, const std::wstring& subkey, const std::wstring& name,
                 const std::wstring& file, const std::wstring& manufacturer) const;

    std::wstring sysDir_;
};

}  // namespace startup
