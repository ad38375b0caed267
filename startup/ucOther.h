// The special startup places: old ini lines, Winlogon values, boot programs, screen saver, startup folders.
#pragma once

#include "startup/category.h"

namespace startup {

// Deleting an entry puts the place's default back; a program is never removed. A startup folder is opened
// instead: the user removes files there by hand.
class ucOther : public Category {
  public:
    ucOther();

    DeletionMessages messagesFor(const StartupItem& item) const override;
    // Throws when Windows refuses.
    Deletion deleteItem(const StartupItem& item, const std::wstring& rowText) const override;

  protected:
    void enumerate(Enumeration& run) const override;
};

}  // namespace startup
