// Memory that runs short, for what is allocated with operator new.
#pragma once

#include <cstddef>

// While it lives, allocations of more than `largest` bytes fail, and so does the one numbered `failing` with
// every later one; the first is number 1, 0 lets all pass.
class MemoryShortage {
  public:
    explicit MemoryShortage(size_t largest, size_t failing = 0);
    ~MemoryShortage();
    MemoryShortage(const MemoryShortage&) = delete;
    MemoryShortage& operator=(const MemoryShortage&) = delete;

    // True when something has been refused.
    bool wasFelt() const;
};

// The most bytes that were allocated at one time since its making, beyond what was then.
class MemoryPeak {
  public:
    MemoryPeak();
    size_t bytes() const;

  private:
    size_t before_;
};
