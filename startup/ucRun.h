// The general startup programs: the values of the Run-family registry keys.
#pragma once

#include "startup/category.h"

namespace startup {

class ucRun : public Category {
  public:
    ucRun();

    Deletion deleteItem(const StartupItem& item, const std::wstring& rowText,
                        const helmkit::Logger& log) const override;

  protected:
    void enumerate(Enumeration& run) const override;
};

}  // namespace startup
