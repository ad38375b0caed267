// Timing: alternating rounds of ours and of the floor, and their medians.
#pragma once

#include <functional>
#include <vector>

namespace bench {

// Microseconds that one call takes.
double timed(const std::function<void()>& work);

// One side alone is for a profiler.
enum class Side { both, ours, floor };

struct Rounds {
    int least = 9;        // rounds of each
    double seconds = 10;  // after which no further round begins
    Side side = Side::both;
};

struct Medians {
    double ours, floor;  // microseconds
};

// A round of each gives the microseconds it took. The first of each is thrown away. Who begins alternates, so
// that neither always finds the caches warm.
Medians alternate(const std::function<double()>& ours, const std::function<double()>& floor,
                  const Rounds& rounds);

// The same of whole calls.
Medians compare(const std::function<void()>& ours, const std::function<void()>& floor, const Rounds& rounds);

}  // namespace bench
