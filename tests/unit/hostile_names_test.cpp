// Every row of the table of hostile names in each of the places whose entries are named.
#include <doctest/doctest.h>

#include <algorithm>
#include <map>

#include "app/backup.h"
#include "helmkit/client/registry_access.h"
#include "startup/ucOther.h"
#include "startup/ucRun.h"
#include "startup/ucServices.h"
#include "startup/ucWinlogon.h"
#include "tests/support/hostile_ground.h"
#include "tests/support/hostile_names.h"
#include "tests/support/open_handles.h"
#include "win32/base/flavour.h"
#include "win32/base/utf16_bytes.h"

namespace {

using helmkit::HKLM;
using startup::StartupItem;

const HKEY machine = HKEY_LOCAL_MACHINE;
const std::wstring currentVersion = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\";
const std::wstring run = currentVersion + L"Run", policy = currentVersion + L"policies\\Explorer\\Run";
const std::wstring notify = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify";
const std::wstring services = L"SYSTEM\\CurrentControlSet\\Services";
const std::wstring runOnceEx = currentVersion + L"RunOnceEx";
const std::wstring runKeys[] = {L"Run", L"RunServices", L"RunOnce", L"RunServicesOnce",
                                L"policies\\Explorer\\Run"};

// Each value starts a file of its own, so that none can stand for another one.
std::wstring fileOf(const HostileName& row) {
    const std::string what = row.what;
    std::wstring file(what.begin(), what.end());
    const auto separates = [](wchar_t c) { return c == L' ' || c == L','; };
    std::replace_if(file.begin(), file.end(), separates, L'-');
    return L"C:\\nowhere\\" + file + L".exe";
}

// Wine's ANSI functions open no path of more than 260 characters.
const size_t longestAnsiKey = 200;

struct Names : HostileGround {
    startup::ucRun general;
    startup::ucWinlogon winlogon;
    startup::ucServices allServices;
    startup::ucOther custom;
    int handles = 0;

    Names() {
        for (const startup::Category* each :
             {static_cast<startup::Category*>(&general), static_cast<startup::Category*>(&winlogon),
              static_cast<startup::Category*>(&allServices), static_cast<startup::Category*>(&custom)}) {
            listed(*each);
        }
        handles = openHandles();
    }
    ~Names() { checkNothingLeaked(handles); }

    static bool isWide() { return win32::flavour() == win32::Flavour::wide; }
    // The name means this entry and no other to the calls of this flavour.
    static bool isExact(const HostileName& row) {
        return row.canBeDeleted && (isWide() || seen(row.name) == row.name);
    }
    static bool canBeKey(const HostileName& row) {
        return !row.isOnlyOfValues && (isWide() || row.name.size() <= longestAnsiKey);
    }
    void seedValues(HKEY hive, const std::wstring& key) {
        registry.setString(hive, key, L"a neighbour", harmless);
        for (const HostileName& row : hostileNames()) {
            registry.setCounted(hive, key, row.name, REG_SZ, win32::bytesOf(fileOf(row) + L'\0'));
        }
        registry.setString(hive, key, L"~ a neighbour", harmless);
    }
    // Below a key of each name a value of that name.
    size_t seedKeys(const std::wstring& key, const std::wstring& valueName) {
        size_t seeded = 0;
        registry.setString(machine, key + L"\\a neighbour", valueName, harmless);
        for (const HostileName& row : hostileNames()) {
            if (!canBeKey(row)) continue;
            ++seeded;
            registry.makeCountedKey(machine, key, row.name);
            if (row.canBeDeleted) registry.setString(machine, key + L"\\" + row.name, valueName, fileOf(row));
        }
        registry.setString(machine, key + L"\\~ a neighbour", valueName, harmless);
        return seeded;
    }
    // The row that an item stands for: an exact name by itself, the others by what they look like.
    static const HostileName* rowOf(const StartupItem& item) {
        const HostileName* alike = nullptr;
        for (const HostileName& row : hostileNames()) {
            if (item.entryName() != seen(row.name)) continue;
            if (isExact(row) && item.file() == fileOf(row)) return &row;
            if (!isExact(row)) alike = &row;
        }
        return alike;
    }
    // Each row's entry was listed so many times; those that look alike together.
    static void checkCounts(const std::map<const HostileName*, int>& counts, size_t rows, int times) {
        int alike = 0, exact = 0;
        for (const auto& [row, count] : counts) {
            CAPTURE(std::string(row->what));
            if (isExact(*row)) CHECK(count == times);
            ++(isExact(*row) ? exact : alike);
            if (!isExact(*row)) alike += count - 1;
        }
        CHECK(exact + alike / times == static_cast<int>(rows));
    }
    // Deletes the entry when its name is exact; another one is refused.
    void checkDeletion(const startup::Category& category, const StartupItem& item, const HostileName& row) {
        CHECK(category.deleteItem(item, item.name(), logger).succeeded == isExact(row));
    }
    std::wstring listedFile(const HostileName& row) const { return isExact(row) ? fileOf(row) : L""; }
};

}  // namespace

TEST_CASE_FIXTURE(Names, "general: values with hostile names are listed, and deleted alone or not at all") {
    for (HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        for (const std::wstring& key : runKeys) seedValues(hive, currentVersion + key);
    }
    Snapshot expected = snapshot();
    std::map<const HostileName*, int> counts;
    int neighbours = 0;
    for (const StartupItem& item : listed(general)) {
        const HostileName* row = rowOf(item);
        if (!row) {
            checkHarmless(general, item);
            ++neighbours;
            continue;
        }
        CAPTURE(std::string(row->what));
        ++counts[row];
        const std::wstring file = listedFile(*row);
        const std::wstring policyText = file.empty() ? L"Not specified" : file;
        checkHostile(general, item, item.keyPath() == policy ? policyText : seen(row->name), file);
        checkDeletion(general, item, *row);
        const std::wstring hive = item.hive() == HKLM ? L"HKEY_LOCAL_MACHINE\\" : L"HKEY_CURRENT_USER\\";
        if (isExact(*row)) expected.keys[hive + item.keyPath()].erase(row->name);
    }
    CHECK(neighbours == 20);
    checkCounts(counts, hostileNames().size(), 10);
    CHECK(snapshot() == expected);
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(
    Names, "general: of hostile names the backup holds all that a line can carry, and tells the rest") {
    seedValues(machine, run);
    Snapshot expected = snapshot();
    size_t omitted = 0;
    for (const HostileName& row : hostileNames()) {
        if (row.canBeExported && (isWide() || seen(row.name) == row.name)) continue;
        if (!row.canBeExported) ++omitted;
        expected.keys[L"HKEY_LOCAL_MACHINE\\" + run].erase(row.name);
    }
    app::writeBackup(logger, folder.path());
    const reg::File file = registryFile(folder.file(L"Backup\\Backup Nov 20, 2026 23-35-47.reg"));
    if (isWide()) checkExport(file, expected);
    CHECK(file.omissions.size() == omitted);
    CHECK(log.lines.size() == omitted);
    for (const LogLine& line : log.lines) {
        CHECK(line.level == 4);
        CHECK(line.source == L"FMain.BackupRegistry");
    }
}

TEST_CASE_FIXTURE(Names,
                  "Winlogon: packages with hostile names are listed, and deleted alone or not at all") {
    const size_t seeded = seedKeys(notify, L"DLLName");
    Snapshot expected = snapshot();
    std::map<const HostileName*, int> counts;
    for (const StartupItem& item : listed(winlogon)) {
        const HostileName* row = rowOf(item);
        if (!row) {
            checkHarmless(winlogon, item);
            continue;
        }
        CAPTURE(std::string(row->what));
        ++counts[row];
        const std::wstring file = listedFile(*row);
        checkHostile(winlogon, item, file.empty() ? L"Not specified" : file, file);
        checkDeletion(winlogon, item, *row);
        if (isExact(*row)) expected.erase(L"HKEY_LOCAL_MACHINE\\" + notify + L'\\' + row->name);
    }
    checkCounts(counts, seeded, 1);
    CHECK(snapshot() == expected);
    CHECK(log.lines.empty());
}

// A name that the calls take for another one reads as nothing, and a service without a program is not listed.
TEST_CASE_FIXTURE(Names, "services: those with hostile names are listed by what they start") {
    const size_t seeded = seedKeys(services, L"ImagePath");
    const Snapshot before = snapshot();
    std::map<const HostileName*, int> counts;
    for (const StartupItem& item : listed(allServices)) {
        const HostileName* row = rowOf(item);
        if (!row) {
            checkHarmless(allServices, item);
            continue;
        }
        CAPTURE(std::string(row->what));
        ++counts[row];
        REQUIRE(isExact(*row));
        checkHostile(allServices, item, fileOf(*row), fileOf(*row));
    }
    const size_t exact = std::count_if(hostileNames().begin(), hostileNames().end(),
                                       [](const HostileName& row) { return isExact(row) && canBeKey(row); });
    CHECK(exact <= seeded);
    checkCounts(counts, exact, 1);
    CHECK(snapshot() == before);
    CHECK(log.lines.empty());
}

// What cannot be deleted stops the emptying, with everything behind it as it was.
TEST_CASE_FIXTURE(Names, "custom: RunOnceEx is emptied of each hostile name, or tells why not") {
    for (const HostileName& row : hostileNames()) {
        if (!canBeKey(row)) continue;
        CAPTURE(std::string(row.what));
        registry.makeKey(HKEY_CURRENT_USER, runOnceEx + L"\\a neighbour");
        registry.makeCountedKey(machine, runOnceEx, row.name);
        const auto items = listed(custom);
        REQUIRE(items.size() == 2);
        CHECK(items[0].place() == 15);
        Snapshot expected = snapshot();
        const std::wstring place = L"HKEY_LOCAL_MACHINE\\" + runOnceEx;
        if (isExact(row)) {
            CHECK(custom.deleteItem(items[0], items[0].name(), logger).succeeded);
            expected.erase(place + L'\\' + row.name);
            CHECK(snapshot() == expected);
        } else {
            CHECK_THROWS_AS(custom.deleteItem(items[0], items[0].name(), logger), win32::Error);
            CHECK(snapshot() == expected);
            registry.deleteBelow(machine, runOnceEx);
        }
    }
    // The way back of a place says what it lacks.
    for (const LogLine& line : log.lines) CHECK(line.text.find(L"not exported: [") == 0);
}

TEST_CASE_FIXTURE(Names, "general: the boxes about hostile names are short and read as one line") {
    seedValues(machine, run);
    PageOf<startup::ucRun> page(parent.handle());
    page.Init(logger);
    win32::ListView& list = page.ListViewObject();
    for (int row = list.count() - 1; row >= 0; --row) {
        const HostileName* name = rowOf(page.itemOf(row));
        CAPTURE(row);
        list.select(row);
        desktop.messageBoxes.clear();
        desktop.messageBoxAnswers = {IDOK, IDOK};
        press(page, 103);
        REQUIRE(desktop.messageBoxes.size() == 2);
        for (const auto& box : desktop.messageBoxes) {
            CHECK(box.text.size() < 1200);
            CHECK(box.text.find_first_of(L"\r\n\x1B\x202E\x2066\x2028") == std::wstring::npos);
        }
        const bool deleted = !name || isExact(*name);
        CHECK((desktop.messageBoxes[1].text.find(L"Access denied. ") == 0) == !deleted);
    }
    for (const LogLine& line : log.lines) CHECK(line.text.find(L"Deleting common(HKEY_LOCAL_MACHINE, ") == 0);
    CHECK(log.lines.size() == hostileNames().size() + 2);
}
