// Custom places: keys that are refused, gone, changed or links.
#include <doctest/doctest.h>

#include "startup/ucOther.h"
#include "tests/support/hostile_keys.h"
#include "win32/base/flavour.h"
#include "win32/base/utf16_bytes.h"

namespace {

const std::wstring winlogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
const std::wstring runOnceEx = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx";
const std::wstring commandProcessor = L"SOFTWARE\\Microsoft\\Command Processor";
const LONG shell = 5, autoRun = 9, machinesRunOnceEx = 15;

// The victims are numbers 5 and 15, the neighbours 8, 9 and 16.
struct Places : HostileKeys {
    startup::ucOther category;

    Places() {
        registry.setString(machine, winlogon, L"shell", L"evil.exe");
        registry.setString(user, L"Control Panel\\Desktop", L"SCRNSAVE.EXE", L"saver.scr");
        registry.setString(machine, commandProcessor, L"AutoRun", L"neighbour.exe");
        registry.setString(machine, runOnceEx + L"\\1", L"a", harmless);
        registry.setString(machine, runOnceEx + L"\\2\\deep", L"b", harmless);
        registry.setString(machine, runOnceEx, L"Title", L"x");
        registry.setString(user, runOnceEx + L"\\1", L"a", harmless);
    }
    static std::wstring numbersOf(const std::vector<startup::StartupItem>& items) {
        std::wstring numbers;
        for (const auto& item : items) numbers += std::to_wstring(item.place()) + L' ';
        return numbers;
    }
    void removeKey(const std::wstring& path) {
        registry.deleteBelow(machine, path);
        registry.deleteKey(machine, path);
    }
    // What is written or deleted through the link would be another key's.
    void link(const std::wstring& path) {
        registry.setString(user, L"Software\\precious", L"shell", L"evil.exe");
        registry.setString(user, L"Software\\precious\\below", L"v", L"kept");
        removeKey(path);
        registry.makeLink(machine, path, user, L"Software\\precious");
    }
    void removeShell() {
        HKEY key = nullptr;
        REQUIRE(::RegOpenKeyExW(machine, winlogon.c_str(), 0, KEY_SET_VALUE, &key) == ERROR_SUCCESS);
        win32::OwnedKey owner(key);
        REQUIRE(::RegDeleteValueW(key, L"shell") == ERROR_SUCCESS);
    }
    void setBack(Snapshot& expected, LONG number) {
        const std::wstring place = L"HKEY_LOCAL_MACHINE\\" + (number == shell ? winlogon : runOnceEx);
        if (number == shell) {
            expected.keys[place][L"shell"] = {REG_SZ, win32::bytesOf(std::wstring(L"Explorer.exe\0", 13))};
        } else {
            expected.erase(place);
            expected.keys[place];
        }
    }
};

struct Row {
    const char* what;
    void (*seed)(Places&);
    const wchar_t* listed;  // the numbers of the places
    LONG deleted;           // number of the place, 0 for none
    bool succeeds;          // false: the deletion is refused and nothing is changed
    void (*change)(Places&) = nullptr;
    int logged = 0;  // lines of the refresh
};

const wchar_t all[] = L"5 8 9 15 16 ", noShell[] = L"8 9 15 16 ", noRunOnceEx[] = L"5 8 9 16 ";

const Row rows[] = {
    {"a value as it should be", [](Places&) {}, all, shell, true},
    {"subkeys as they should be", [](Places&) {}, all, machinesRunOnceEx, true},
    // Four places stand in the one key.
    {"refused for reading", [](Places& p) { p.restrict(p.machine, winlogon, KEY_WRITE); }, noShell, 0, false,
     nullptr, 4},
    {"refused for writing", [](Places& p) { p.restrict(p.machine, winlogon, KEY_READ); }, all, shell, false},
    {"refused for writing since", [](Places&) {}, all, shell, false,
     [](Places& p) { p.restrict(p.machine, winlogon, KEY_READ); }},
    {"subkeys refused for listing", [](Places& p) { p.restrict(p.machine, runOnceEx, KEY_QUERY_VALUE); },
     noRunOnceEx, 0, false, nullptr, 1},
    // Wine lets everybody delete: who may not look into a key stands for who may not delete it.
    {"the first subkey refused", [](Places& p) { p.restrict(p.machine, runOnceEx + L"\\1", DELETE); }, all,
     machinesRunOnceEx, false},
    {"the value gone since", [](Places&) {}, all, shell, true, [](Places& p) { p.removeShell(); }},
    {"the key gone since", [](Places&) {}, all, shell, true, [](Places& p) { p.removeKey(winlogon); }},
    {"the subkeys gone since", [](Places&) {}, all, machinesRunOnceEx, true,
     [](Places& p) { p.registry.deleteBelow(p.machine, runOnceEx); }},
    {"other data since", [](Places&) {}, all, shell, true,
     [](Places& p) { p.registry.setString(p.machine, winlogon, L"shell", L"worse.exe"); }},
    {"a number since", [](Places&) {}, all, shell, true,
     [](Places& p) { p.registry.setNumber(p.machine, winlogon, L"shell", 7); }},
    {"a link", [](Places& p) { p.link(winlogon); }, all, shell, false},
    {"a link since", [](Places&) {}, all, shell, false, [](Places& p) { p.link(winlogon); }},
    {"subkeys behind a link", [](Places& p) { p.link(runOnceEx); }, all, machinesRunOnceEx, false},
    {"subkeys behind a link since", [](Places&) {}, all, machinesRunOnceEx, false,
     [](Places& p) { p.link(runOnceEx); }},
    {"a link among the subkeys",
     [](Places& p) { p.registry.makeLink(p.machine, runOnceEx + L"\\0", p.user, L"Software"); }, all,
     machinesRunOnceEx, true},
    {"a link to the place among the subkeys",
     [](Places& p) { p.registry.makeLink(p.machine, runOnceEx + L"\\0", p.machine, runOnceEx); }, all,
     machinesRunOnceEx, true},
    {"a link to nowhere",
     [](Places& p) {
         p.removeKey(winlogon);
         p.registry.makeLink(p.machine, winlogon, p.user, L"Software\\nowhere");
     },
     noShell, 0, false},
    {"a link to itself",
     [](Places& p) {
         p.removeKey(winlogon);
         p.registry.makeLink(p.machine, winlogon, p.machine, winlogon);
     },
     noShell, 0, false, nullptr, 4},
    {"a key where the value should be",
     [](Places& p) {
         p.removeShell();
         p.registry.makeKey(p.machine, winlogon + L"\\shell");
     },
     noShell, 0, false},
    {"a value where the subkeys should be",
     [](Places& p) {
         p.registry.deleteBelow(p.machine, runOnceEx);
         p.registry.setString(p.machine, runOnceEx, L"1", p.harmless);
     },
     noRunOnceEx, 0, false},
    {"the name in other letters",
     [](Places& p) {
         p.removeShell();
         p.registry.setString(p.machine, winlogon, L"Shell", L"evil.exe");
     },
     all, 0, false},
    {"10,000 values beside it",
     [](Places& p) {
         for (int i = 0; i < 10000; ++i)
             p.registry.setString(p.machine, winlogon, L"shell" + std::to_wstring(i), L"x");
     },
     all, shell, true},
};

void check(const Row& row) {
    Places p;
    row.seed(p);
    const int handles = openHandles();
    const auto items = p.listed(p.category);
    CHECK(p.numbersOf(items) == row.listed);
    CHECK(static_cast<int>(p.log.lines.size()) == row.logged);
    for (const LogLine& line : p.log.lines) CHECK(line.source == L"ucOther.EnumItems");
    for (const auto& item : items) {
        if (item.place() == autoRun) CHECK(item.manufacturer() == L"neighbour.exe");
    }
    // With the first row Windows opens some for good.
    if (&row != rows) CHECK(openHandles() == handles);
    for (const auto& item : items) {
        if (item.place() != row.deleted) continue;
        if (row.change) row.change(p);
        Snapshot expected = snapshot();
        bool succeeded = false;
        try {
            succeeded = p.category.deleteItem(item, item.name(), p.logger).succeeded;
        } catch (const win32::Error&) {
        }
        CHECK(succeeded == row.succeeds);
        if (succeeded) p.setBack(expected, row.deleted);
        CHECK(snapshot() == expected);
        // What was not changed needs no way back.
        CHECK((succeeded || p.keptFiles().empty()));
    }
}

}  // namespace

TEST_CASE("custom: what becomes of a place whose key is refused, gone, changed or a link") {
    for (const Row& row : rows) {
        CAPTURE(std::string(row.what));
        const bool needsLinks = std::string(row.what).find("link") != std::string::npos;
        if (!needsLinks || win32::flavour() == win32::Flavour::wide) check(row);
    }
}
