// The Winlogon notification packages: libraries that the logon process of the NT family calls on its events.
#pragma once

#include "startup/category.h"

namespace startup {

class ucWinlogon : public Category {
  public:
    ucWinlogon();

    Deletion deleteItem(const StartupItem& item, const std::wstring& rowText,
                        const helmkit::Logger& log) const override;

    // The events that a package asks for, in a fixed order, joined by ", "; empty for none. Nothing shows it.
    static std::wstring eventsSummary(const std::wstring& subkey);

  protected:
    void enumerate(Enumeration& run) const override;
};

}  // namespace startup
