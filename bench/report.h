// What was measured: as a table for people, as JSON for programs.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace bench {

enum class Unit { microseconds, bytes };

struct Line {
    std::string name;
    double ours = 0;
    std::optional<double> floor = {};   // none where there is nothing to compare with
    std::optional<double> growth = {};  // times the figure before it, of fewer entries
    double largestGrowth = 0;           // what that is to stay below
    double target = 0;                  // what ratio (bytes, where there is no floor) is to reach
    Unit unit = Unit::microseconds;

    std::optional<double> ratio() const;
    bool isReached() const;
};

class Report {
  public:
    // Prints the line at once: a run takes minutes.
    void add(const Line& line);
    const std::vector<Line>& lines() const { return lines_; }
    // {"name":…,"ours_us":…,"floor_us":…,"ratio":…,"growth":…} for each figure; one that is counted in bytes
    // has null there and ours_bytes and floor_bytes instead.
    std::string json() const;

  private:
    std::vector<Line> lines_;
};

}  // namespace bench
