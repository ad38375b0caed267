// The refresh of a page of 100, 1,000 and 10,000 entries.
#pragma once

#include "bench/entries.h"
#include "bench/floor/floors.h"
#include "bench/page.h"

namespace bench {

template <class Category>
void refreshFigure(const std::string& name, decltype(runValues)* values, decltype(floor::readGeneral)* read,
                   const Options& options, Report& report) {
    std::optional<double> before;
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
                     .target = 1.25};
        if (before) line.growth = medians.ours / *before;
        before = medians.ours;
        report.add(line);
    }
}

}  // namespace bench
