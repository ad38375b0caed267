// The special startup places: old ini lines, Winlogon values, boot programs, screen saver, startup folders.
#pragma once

#include "startup/StartupListControl.h"
#include "startup/special_places.h"

namespace startup {

// Deleting a row puts the place's default back; a program is never
// removed.
class ucOther : public StartupListControl {
  public:
    explicit ucOther(HWND parent);

  protected:
    void EnumItems(StartupItemList& list) override;
    const std::wstring& iconField() const override { return field::GridIcon; }
    std::wstring secondColumn(const StartupItem& item) const override {
        return item.text(field::Manufacturer);
    }
    bool isSameEntry(const StartupItem& a, const StartupItem& b) const override {
        return a.number(field::Place) == b.number(field::Place);
    }
    void deleteRow(int row) override;

  private:
    void restore(const SpecialPlace& place, const std::wstring& description);
    void openStartupFolder(const SpecialPlace& place);

    std::wstring winDir_;
    std::vector<SpecialPlace> places_;
};

}  // namespace startup
