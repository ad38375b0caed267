#include "app/backup.h"
#include "bench/exported_values.h"
#include "bench/floor/floors.h"
#include "bench/page.h"
#include "bench/processes.h"
#include "helmkit/client/logger.h"
#include "win32/system/system.h"

namespace bench {

namespace {

const std::wstring emptyKey = L"Empty";

// The registry editor's command line on the keys of this process's own hives, by their real names.
std::wstring exportCommand(const ExportedKey& key, const std::wstring& path, const std::wstring& file) {
    return L"reg export \"HKCU\\" + RegistryFixture::name() +
           (key.hive == HKEY_LOCAL_MACHINE ? L"\\machine\\" : L"\\user\\") + path + L"\" \"" + file +
           L"\" /y";
}

void runPeer(const std::wstring& file, bool onEmptyKeys) {
    for (const ExportedKey& key : exportedKeys()) {
        const Process peer(exportCommand(key, onEmptyKeys ? emptyKey : key.path, file));
        REQUIRE(peer.exitCode() == 0);
    }
}

void comparePeer(const std::wstring& file, double ours, const Options& options, Report& report) {
    // What the peer takes on empty keys is what its starts take.
    const Medians peer =
        compare([&] { runPeer(file, false); }, [&] { runPeer(file, true); }, roundsFor(options, 12));
    report.add({.name = "backup-peer", .ours = ours, .floor = peer.ours - peer.floor, .target = 1.0 / 3});
    report.add({.name = "backup-peer-starts", .ours = ours, .floor = peer.ours, .target = 1.0 / 3});
}

}  // namespace

void backup(const Options& options, Report& report) {
    World world;
    storeExportedValues(options.quick ? 200 : 10000);
    for (HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) RegistryFixture::makeKey(hive, emptyKey);
    const helmkit::Logger logger = helmkit::Logger::create();
    const std::wstring folder = win32::moduleFolder(nullptr);
    const Medians medians =
        compare([&] { app::writeBackup(logger, folder); },
                [&] { floor::backup(world.folder.file(L"floor.backup")); }, roundsFor(options));
    report.add({.name = "backup", .ours = medians.ours, .floor = medians.floor, .target = 1.15});
    comparePeer(world.folder.file(L"peer.reg"), medians.ours, options, report);
}

}  // namespace bench
