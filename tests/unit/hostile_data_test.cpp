// Every row of the table of hostile data at every place of the four tabs.
#include <doctest/doctest.h>

#include <map>

#include "app/backup.h"
#include "helmkit/client/registry_access.h"
#include "startup/ucOther.h"
#include "startup/ucRun.h"
#include "startup/ucServices.h"
#include "startup/ucWinlogon.h"
#include "tests/support/hostile_data.h"
#include "tests/support/hostile_ground.h"
#include "tests/support/open_handles.h"

namespace {

using helmkit::HKCU;
using helmkit::HKLM;
using startup::Category;
using startup::StartupItem;

const std::wstring currentVersion = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\";
const std::wstring policy = currentVersion + L"policies\\Explorer\\Run";
const std::wstring notify = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify";
const std::wstring services = L"SYSTEM\\CurrentControlSet\\Services";

struct RunPlace {
    LONG hive;
    std::wstring key;
};
const RunPlace runPlaces[] = {
    {HKLM, currentVersion + L"Run"},
    {HKCU, currentVersion + L"Run"},
    {HKLM, currentVersion + L"RunServices"},
    {HKCU, currentVersion + L"RunServices"},
    {HKLM, currentVersion + L"RunOnce"},
    {HKCU, currentVersion + L"RunOnce"},
    {HKLM, currentVersion + L"RunOnce\\Setup"},
    {HKLM, currentVersion + L"RunServicesOnce"},
    {HKCU, currentVersion + L"RunServicesOnce"},
    {HKLM, policy},
    {HKCU, policy},
};

HKEY root(LONG hive) {
    return hive == HKLM ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

std::wstring fullName(LONG hive, const std::wstring& key) {
    return (hive == HKLM ? L"HKEY_LOCAL_MACHINE\\" : L"HKEY_CURRENT_USER\\") + key;
}

std::wstring nameOf(const HostileData& row) {
    return L"hostile " + std::wstring(row.what.begin(), row.what.end());
}

struct Data : HostileGround {
    int handles = 0;

    Data() {
        // What the first listing loads for good is no leak.
        for (const Category* each : all()) listed(*each);
        app::writeBackup(logger, folder.path());
        handles = openHandles();
    }
    ~Data() {
        checkNothingLeaked(handles);
        CHECK(log.lines.empty());
    }

    startup::ucRun general;
    startup::ucWinlogon winlogon;
    startup::ucServices allServices;
    startup::ucOther custom;
    std::vector<const Category*> all() const { return {&general, &winlogon, &allServices, &custom}; }

    // Large data stands at the first of the places only: at all of them it tells nothing more.
    void seed(LONG hive, const std::wstring& key, bool withLarge) {
        registry.setString(root(hive), key, L"a neighbour", harmless);
        for (const HostileData& row : hostileData()) {
            if (withLarge || !row.isLarge)
                registry.setBytes(root(hive), key, nameOf(row), row.type, row.bytes);
        }
        registry.setString(root(hive), key, L"~ a neighbour", harmless);
    }
    void seedBelow(const std::wstring& key, const std::wstring& valueName) {
        registry.setString(HKEY_LOCAL_MACHINE, key + L"\\a neighbour", valueName, harmless);
        for (const HostileData& row : hostileData()) {
            registry.setBytes(HKEY_LOCAL_MACHINE, key + L"\\" + nameOf(row), valueName, row.type, row.bytes);
        }
        registry.setString(HKEY_LOCAL_MACHINE, key + L"\\~ a neighbour", valueName, harmless);
    }
    // The entries that are listed, each under the row of its data; the two neighbours are looked at.
    std::map<const HostileData*, StartupItem> hostileOnes(const Category& category,
                                                          const std::vector<StartupItem>& items) {
        std::map<std::wstring, const HostileData*> rows;
        for (const HostileData& row : hostileData()) rows[nameOf(row)] = &row;
        std::map<const HostileData*, StartupItem> found;
        int neighbours = 0;
        for (const StartupItem& item : items) {
            CAPTURE(item.entryName());
            if (const auto row = rows.find(item.entryName()); row != rows.end()) {
                CHECK(found.emplace(row->second, item).second);
            } else {
                checkHarmless(category, item);
                ++neighbours;
            }
        }
        CHECK(neighbours == 2);
        return found;
    }
};

std::wstring orNotSpecified(const std::wstring& text) {
    return text.empty() ? L"Not specified" : text;
}

}  // namespace

TEST_CASE("the table of hostile data holds 170 rows") {
    CHECK(hostileData().size() == 170);
}

TEST_CASE_FIXTURE(Data, "general: hostile data in each of the eleven keys is listed and kept") {
    for (const RunPlace& place : runPlaces) seed(place.hive, place.key, &place == runPlaces);
    const std::vector<StartupItem> items = listed(general);
    for (const RunPlace& place : runPlaces) {
        CAPTURE(place.key);
        std::vector<StartupItem> here;
        for (const StartupItem& item : items) {
            if (item.hive() == place.hive && item.keyPath() == place.key) here.push_back(item);
        }
        const auto hostile = hostileOnes(general, here);
        for (const HostileData& row : hostileData()) {
            if (row.isLarge && &place != runPlaces) continue;
            CAPTURE(row.what);
            REQUIRE(hostile.count(&row));
            const std::wstring text = place.key == policy ? orNotSpecified(seen(row.text)) : nameOf(row);
            checkHostile(general, hostile.at(&row), text, seen(row.file));
        }
    }
    CHECK(items.size() == 11 * (hostileData().size() + 2) - 10 * 5);
    app::writeBackup(logger, folder.path());
    checkExport(registryFile(folder.file(L"Backup\\Backup Nov 20, 2026 23-35-47.reg")), snapshot());
}

TEST_CASE_FIXTURE(Data, "general: each entry with hostile data is deleted alone") {
    for (const RunPlace& place : runPlaces) seed(place.hive, place.key, false);
    Snapshot expected = snapshot();
    for (const StartupItem& item : listed(general)) {
        if (item.entryName().find(L"hostile ") != 0) continue;
        CAPTURE(item.entryName());
        CHECK(general.deleteItem(item, item.name(), logger).succeeded);
        StoredKey& key = expected.keys[fullName(item.hive(), item.keyPath())];
        key.erase(item.valueName());
        // With as many values left, and this one gone, every other one is still there.
        CHECK(registry.valueCount(root(item.hive()), item.keyPath()) == key.size());
        CHECK_FALSE(registry.hasValue(root(item.hive()), item.keyPath(), item.valueName()));
    }
    CHECK(snapshot() == expected);
    CHECK(listed(general).size() == 22);
}

TEST_CASE_FIXTURE(Data, "Winlogon: packages with hostile data are listed, kept, and each is deleted alone") {
    seedBelow(notify, L"DLLName");
    const auto hostile = hostileOnes(winlogon, listed(winlogon));
    Snapshot expected = snapshot();
    checkExport(reg::read(helmkit::RegistryAccess().ExportKey(HKLM, notify).text()), expected);
    for (const HostileData& row : hostileData()) {
        CAPTURE(row.what);
        REQUIRE(hostile.count(&row));
        const StartupItem& item = hostile.at(&row);
        checkHostile(winlogon, item, orNotSpecified(seen(row.text)), seen(row.file));
        CHECK(winlogon.deleteItem(item, item.name(), logger).succeeded);
        expected.erase(fullName(HKLM, notify + L"\\" + nameOf(row)));
        CHECK_FALSE(registry.hasKey(HKEY_LOCAL_MACHINE, notify + L"\\" + nameOf(row)));
    }
    CHECK(snapshot() == expected);
}

TEST_CASE_FIXTURE(Data, "services: hostile image paths are listed unless they are empty") {
    seedBelow(services, L"ImagePath");
    const Snapshot before = snapshot();
    const auto hostile = hostileOnes(allServices, listed(allServices));
    for (const HostileData& row : hostileData()) {
        CAPTURE(row.what);
        REQUIRE(hostile.count(&row) == !row.text.empty());
        if (row.text.empty()) continue;
        const StartupItem& item = hostile.at(&row);
        checkHostile(allServices, item, seen(row.file), seen(row.file));
        CHECK_FALSE(allServices.deleteItem(item, item.name(), logger).succeeded);
    }
    CHECK(snapshot() == before);
}

TEST_CASE_FIXTURE(Data, "services: a hostile display name is shown, an empty one is not") {
    for (const HostileData& row : hostileData()) {
        registry.setString(HKEY_LOCAL_MACHINE, services + L"\\" + nameOf(row), L"ImagePath",
                           L"C:\\nowhere\\s.sys");
        registry.setBytes(HKEY_LOCAL_MACHINE, services + L"\\" + nameOf(row), L"DisplayName", row.type,
                          row.bytes);
    }
    for (const wchar_t* name : {L"a", L"b"}) {
        registry.setString(HKEY_LOCAL_MACHINE, services + L"\\" + name, L"ImagePath", harmless);
    }
    const auto hostile = hostileOnes(allServices, listed(allServices));
    for (const HostileData& row : hostileData()) {
        CAPTURE(row.what);
        REQUIRE(hostile.count(&row));
        const std::wstring shown = seen(row.text);
        checkHostile(allServices, hostile.at(&row), shown.empty() ? L"C:\\nowhere\\s.sys" : shown,
                     L"C:\\nowhere\\s.sys");
    }
}
