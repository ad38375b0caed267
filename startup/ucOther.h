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
    // Throws when Windows refuses. What the place holds is kept first (startup/way_back.h); where that fails,
    // a log line says so and the place is set back all the same.
    Deletion deleteItem(const StartupItem& item, const std::wstring& rowText,
                        const helmkit::Logger& log) const override;

  protected:
    void enumerate(Enumeration& run) const override;
};

}  // namespace startup
