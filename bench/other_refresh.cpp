#include "bench/floor/floors.h"
#include "bench/page.h"
#include "bench/places.h"
#include "startup/ucOther.h"
#include "win32/system/environment.h"

namespace bench {

void otherRefresh(const Options& options, Report& report) {
    World world;
    const std::wstring before = win32::environmentVariable(L"windir");
    win32::setEnvironmentVariable(L"windir", world.folder.path());
    TempFolder::write(world.folder.file(L"win.ini"), winIni(options.quick ? 1 << 14 : 1 << 20));
    TempFolder::write(world.folder.file(L"system.ini"), systemIni());
    store(placeValues(world.folder.path()));
    {
        Pages<startup::ucOther> pages;
        auto ours = [&] { pages.page.RefreshList(); };
        auto floor = [&] { pages.list.fill(bench::floor::readOther()); };
        floor();
        requireSameValues(pages.page.ListViewObject(), pages.list.window());
        const Medians medians = compare(ours, floor, roundsFor(options));
        report.add({.name = "other-refresh", .ours = medians.ours, .floor = medians.floor, .target = 1.1});
    }
    win32::setEnvironmentVariable(L"windir", before);
}

}  // namespace bench
