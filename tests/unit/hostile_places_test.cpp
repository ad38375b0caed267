// Every row of the table of hostile data at every custom place, and what is kept of it when it is set back.
#include <doctest/doctest.h>

#include "startup/ucOther.h"
#include "tests/support/hostile_data.h"
#include "tests/support/hostile_ground.h"
#include "tests/support/open_handles.h"
#include "win32/base/utf16_bytes.h"

namespace {

using startup::Icon;
using startup::StartupItem;

const HKEY machine = HKEY_LOCAL_MACHINE, user = HKEY_CURRENT_USER;
const std::wstring windowsKey = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Windows";
const std::wstring winlogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
const std::wstring sessionManager = L"SYSTEM\\CurrentControlSet\\Control\\Session Manager";
const std::wstring runOnceEx = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx";
const std::wstring explorer = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\";

struct Place {
    HKEY hive;
    std::wstring key, name, restored;
};
// By the number of the place, less one.
const Place places[] = {
    {user, windowsKey, L"run", L""},
    {machine, windowsKey, L"run", L""},
    {user, windowsKey, L"load", L""},
    {machine, windowsKey, L"load", L""},
    {machine, winlogon, L"shell", L"Explorer.exe"},
    {machine, winlogon, L"userinit", L"<system>userinit.exe,"},
    {machine, sessionManager, L"BootExecute", L"autocheck autochk *"},
    {user, L"Control Panel\\Desktop", L"SCRNSAVE.EXE", L"(NONE)"},
    {machine, L"SOFTWARE\\Microsoft\\Command Processor", L"AutoRun", L""},
    {machine, winlogon, L"VmApplet", L"rundll32 shell32,Control_RunDLL \"sysdm.cpl\""},
    {machine, winlogon, L"UIHost", L"logonui.exe"},
};
const size_t screenSaver = 8;

std::wstring fullName(const Place& place) {
    return (place.hive == machine ? L"HKEY_LOCAL_MACHINE\\" : L"HKEY_CURRENT_USER\\") + place.key;
}

struct Custom : HostileGround {
    startup::ucOther custom;
    int handles = 0;

    Custom() {
        // Harmless ones beside those that are tried: numbers 13 and 16.
        TempFolder::write(windows + L"\\win.ini", "[windows]\r\nrun=neighbour.exe\r\n");
        registry.setString(user, runOnceEx + L"\\a neighbour", L"1", harmless);
        listed(custom);
        handles = openHandles();
    }
    ~Custom() { checkNothingLeaked(handles); }
    void seed(const HostileData& row) {
        for (const Place& place : places) {
            registry.setBytes(place.hive, place.key, place.name, row.type, row.bytes);
        }
    }
    // Set back, a value keeps its type where that is a string's.
    StoredValue restored(const Place& place, DWORD before) const {
        std::wstring text = place.restored;
        if (text.find(L"<system>") == 0) text = win32::lowered(windows) + L"\\system32\\" + text.substr(8);
        const bool keepsType = before == REG_EXPAND_SZ || before == REG_MULTI_SZ;
        text.append(before == REG_MULTI_SZ ? 2 : 1, L'\0');
        return {keepsType ? before : REG_SZ, win32::bytesOf(text)};
    }
    void checkNeighbours(const std::vector<StartupItem>& items, size_t others) {
        REQUIRE(items.size() == others + 2);
        CHECK(items[others].place() == 13);
        CHECK(items[others].manufacturer() == L"neighbour.exe");
        CHECK(items[others + 1].place() == 16);
    }
    // The one place is set back, everything else stays, and what it held is kept.
    void restore(const StartupItem& item, Snapshot& expected) {
        const Place& place = places[item.place() - 1];
        StoredValue& value = expected.keys[fullName(place)][place.name];
        const StoredValue before = value;
        CHECK(custom.deleteItem(item, item.name(), logger).succeeded);
        value = restored(place, before.type);
        const auto files = keptFiles();
        REQUIRE(files.size() == 1);
        Snapshot held;
        held.keys[fullName(place)][place.name] = before;
        checkExport(registryFile(files[0]), held);
        removeKept();
    }
};

}  // namespace

// Setting a place back is the same work for all eleven: each row tries three of them, in turn.
TEST_CASE_FIXTURE(Custom, "custom: hostile data at each of the eleven values is listed, kept and set back") {
    size_t turn = 0;
    for (const HostileData& row : hostileData()) {
        CAPTURE(row.what);
        // Large data is tried at one of them.
        seed(row.isLarge ? hostileData()[0] : row);
        if (row.isLarge) registry.setBytes(machine, winlogon, L"shell", row.type, row.bytes);
        const std::vector<StartupItem> items = listed(custom);
        const size_t hostile = row.isLarge ? 11 : row.raw.empty() ? 0 : 11;
        checkNeighbours(items, hostile);
        Snapshot expected = snapshot();
        for (size_t i = 0; i < hostile; ++i) {
            CHECK(items[i].place() == static_cast<LONG>(i + 1));
            if (row.isLarge && i != 4) continue;
            CHECK(items[i].manufacturer() == seen(row.raw));
            CHECK(items[i].icon() == (i + 1 == screenSaver ? Icon::ordinary : Icon::exclamation));
            if (row.isLarge || ++turn % 4 == 0) restore(items[i], expected);
        }
        CHECK(snapshot() == expected);
        CHECK(log.lines.empty());
    }
}

TEST_CASE_FIXTURE(Custom, "custom: RunOnceEx with hostile data below it is kept and emptied") {
    registry.setString(machine, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce", L"other", harmless);
    for (const HostileData& row : hostileData()) {
        const std::wstring name(row.what.begin(), row.what.end());
        registry.setBytes(machine, runOnceEx, name, row.type, row.bytes);
        registry.setBytes(machine, runOnceEx + L"\\" + name + L"\\deep", L"1", row.type, row.bytes);
    }
    const auto items = listed(custom);
    REQUIRE(items.size() == 3);
    CHECK(items[1].place() == 15);
    Snapshot expected = snapshot();
    CHECK(custom.deleteItem(items[1], items[1].name(), logger).succeeded);
    REQUIRE(keptFiles().size() == 1);
    const std::wstring place = L"HKEY_LOCAL_MACHINE\\" + runOnceEx;
    checkExport(registryFile(keptFiles()[0]), expected.below(place));
    expected.erase(place);
    expected.keys[place];
    CHECK(snapshot() == expected);
    CHECK(log.lines.empty());
}

// The folder that hostile data names is not there; where it names none, "User Shell Folders" is asked.
TEST_CASE_FIXTURE(Custom, "custom: hostile data in the place of the startup folders' paths") {
    TempFolder::write(windows + L"\\system32\\a.lnk", "x");
    for (const HostileData& row : hostileData()) {
        CAPTURE(row.what);
        for (HKEY hive : {machine, user}) {
            const std::wstring name = hive == machine ? L"Common Startup" : L"Startup";
            registry.setBytes(hive, explorer + L"Shell Folders", name, row.type, row.bytes);
            registry.setString(hive, explorer + L"User Shell Folders", name, L"%windir%\\system32");
        }
        const auto items = listed(custom);
        REQUIRE(items.size() == (row.raw.empty() ? 4 : 2));
        for (size_t i = 2; i < items.size(); ++i) {
            CHECK(items[i].place() == static_cast<LONG>(15 + i));
            CHECK(items[i].icon() == Icon::ordinary);
        }
    }
    CHECK(log.lines.empty());
}
