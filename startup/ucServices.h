// Services and drivers that do not belong to Windows. Nothing is ever deleted from this page.
#pragma once

#include "startup/category.h"

namespace startup {

class ucServices : public Category {
  public:
    ucServices();

  protected:
    void enumerate(Enumeration& run) const override;
};

}  // namespace startup
