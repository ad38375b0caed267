// Services and drivers that do not belong to Windows. Nothing is ever deleted from this page.
#pragma once

#include "startup/category.h"

namespace startup {

class ucServices : public Category {
  public:
    // The services of a plain Windows, which have a known-good image path, are skipped or listed like all
    // others.
    enum class Standard { skipped, listed };
    explicit ucServices(Standard standard = Standard::skipped);

  protected:
    void enumerate(Enumeration& run) const override;

  private:
    Standard standard_;
};

}  // namespace startup
