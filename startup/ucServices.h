// Services and drivers that do not belong to Windows. Nothing is ever deleted from this page.
#pragma once

#include "helmkit/client/registry_access.h"
#include "startup/StartupListControl.h"
#include "startup/known_good_image_paths.h"

namespace startup {

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
