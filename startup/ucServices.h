// Services and drivers that do not belong to Windows. Nothing is ever deleted from this page.
#pragma once

#include "startup/StartupListControl.h"

namespace startup {

// True when the image path, lower-cased and otherwise as it stands in the registry, is one of the paths of a
// plain Windows 2000 or XP.
bool IsKnownGoodImagePath(const std::wstring& imagePath);

class ucServices : public StartupListControl {
  public:
    explicit ucServices(HWND parent);

  protected:
    void EnumItems(StartupItemList& list) override;
    const std::wstring& iconField() const override { return field::GridIcon; }
    // Both the button and the menu's "Delete" open the properties of the row's file.
    void deleteRow(int row) override;

  private:
    void FillItemInfo(const std::vector<std::wstring>& services, StartupItemList& list);
    void fillService(helmkit::RegistryAccess& registry, const std::wstring& service, StartupItemList& list);

    std::wstring sysDir_;
};

}  // namespace startup
