// The refresh of a page of 100, 1,000 and 10,000 entries, or of 10,000 and 40,000.
#pragma once

#include <algorithm>

#include "bench/entries.h"
#include "bench/floor/floors.h"
#include "bench/page.h"

namespace bench {

// With more than 1,000 entries what is left is the registry, which both ask alike; with more than 10,000 only
// the growth is to reach something.
struct RefreshTargets {
    double upTo1000, beyond, any = 1.25;
};

template <class Category>
void refreshFigure(const std::string& name, decltype(runValues)* values, decltype(floor::readGeneral)* read,
                   RefreshTargets targets, const Options& options, Report& report) {
    std::optional<std::pair<int, double>> before;
    for (int count : entryCounts(options)) {
        World world;
        store(values(count, makePrograms(world.folder.path(), std::min(count, distinctFiles))));
        Pages<Category> pages;
        auto ours = [&] { pages.page.RefreshList(); };
        auto floor = [&] { pages.list.fill(read()); };
        floor();
        requireSameRows(pages.page.ListViewObject(), pages.list.window());
        const Medians medians = compare(ours, floor, roundsFor(options));
        Line line = {.name = name + "-" + std::to_string(count),
                     .ours = medians.ours,
                     .floor = medians.floor,
                     .target = count <= 1000    ? targets.upTo1000
                               : count <= 10000 ? targets.beyond
                                                : targets.any};
        if (before) {
            line.growth = medians.ours / before->second;
            line.largestGrowth = 1.1 * count / before->first;
        }
        before = {count, medians.ours};
        report.add(line);
    }
}

}  // namespace bench
