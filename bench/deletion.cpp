#include "bench/entries.h"
#include "bench/floor/floors.h"
#include "bench/floor/registry.h"
#include "bench/page.h"
#include "helmkit/client/logger.h"
#include "startup/ucRun.h"

namespace bench {

namespace {

const int deleteButton = 103;

void deleteOurs(World& world, startup::StartupListControl& page) {
    // The question, and the message that it is done.
    world.desktop.messageBoxAnswers = {IDOK, IDOK};
    ::SendMessageW(page.handle(), WM_COMMAND, MAKEWPARAM(deleteButton, BN_CLICKED), 0);
}

void deletePlainly(floor::List& list, const Value& value) {
    HKEY key = nullptr;
    REQUIRE(!::RegOpenKeyExW(value.hive, value.keyPath.c_str(), 0, floor::reading | KEY_SET_VALUE, &key));
    REQUIRE(!::RegDeleteValueW(key, value.name.c_str()));
    ::RegCloseKey(key);
    list.fill(floor::readGeneral());
}

}  // namespace

void deletion(const Options& options, Report& report) {
    World world;
    const auto values = runValues(options.quick ? 100 : 10000, makePrograms(world.folder.path()));
    store(values);
    Pages<startup::ucRun> pages;
    helmkit::Logger log = helmkit::Logger::create();
    log.OpenLogs(world.folder.file(L"full.log"), world.folder.file(L"short.log"));
    pages.page.Init(log);
    // The first row is the one selected after a refresh; its value comes back after every round.
    auto round = [&](const std::function<void()>& work) {
        const double time = timed(work);
        REQUIRE_FALSE(RegistryFixture::hasValue(values[0].hive, values[0].keyPath, values[0].name));
        store({values[0]});
        return time;
    };
    auto ours = [&] {
        pages.page.ListViewObject().select(0);
        const double time = round([&] { deleteOurs(world, pages.page); });
        pages.page.RefreshList();
        return time;
    };
    const Medians medians = alternate(
        ours, [&] { return round([&] { deletePlainly(pages.list, values[0]); }); }, roundsFor(options));
    report.add({.name = "delete", .ours = medians.ours, .floor = medians.floor, .target = 0.97});
}

}  // namespace bench
