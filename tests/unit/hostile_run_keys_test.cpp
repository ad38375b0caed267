// General: keys that are refused, gone, changed or links.
#include <doctest/doctest.h>

#include "startup/ucRun.h"
#include "tests/support/hostile_keys.h"
#include "win32/base/flavour.h"

namespace {

const std::wstring currentVersion = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
const std::wstring run = currentVersion + L"\\Run", runOnce = currentVersion + L"\\RunOnce";
const std::wstring policy = currentVersion + L"\\policies\\Explorer\\Run";
const wchar_t victim[] = L"victim";

struct General : HostileKeys {
    startup::ucRun category;

    void fill(HKEY hive, const std::wstring& key) {
        for (const wchar_t* name : {L"a", victim, L"z"}) registry.setString(hive, key, name, harmless);
    }
    // In the place of the Run key a link, to a key that holds the same.
    void linkRun() {
        fill(user, L"Software\\target");
        registry.deleteKey(machine, run);
        registry.makeLink(machine, run, user, L"Software\\target");
    }
    void removeRun() { registry.deleteKey(machine, run); }
    void removeVictim() {
        HKEY key = nullptr;
        REQUIRE(::RegOpenKeyExW(machine, run.c_str(), 0, KEY_SET_VALUE, &key) == ERROR_SUCCESS);
        win32::OwnedKey owner(key);
        REQUIRE(::RegDeleteValueW(key, victim) == ERROR_SUCCESS);
    }
};

const wchar_t all[] = L"a; victim; z; user's; ";
const wchar_t none[] = L"user's; ";
const wchar_t enumItems[] = L"ucRun.EnumItems";

const HostileKey<General> rows[] = {
    {"as it should be", [](General&) {}, all, Outcome::removed},
    {"refused for reading", [](General& g) { g.restrict(g.machine, run, KEY_WRITE); }, none,
     Outcome::notListed, nullptr, enumItems},
    {"refused for everything", [](General& g) { g.restrict(g.machine, run, 0); }, none, Outcome::notListed,
     nullptr, enumItems},
    {"refused for listing values", [](General& g) { g.restrict(g.machine, run, KEY_ENUMERATE_SUB_KEYS); },
     none, Outcome::notListed, nullptr, enumItems},
    {"refused for writing", [](General& g) { g.restrict(g.machine, run, KEY_READ); }, all, Outcome::refused},
    {"refused for writing since", [](General&) {}, all, Outcome::refused,
     [](General& g) { g.restrict(g.machine, run, KEY_READ); }},
    {"the value gone since", [](General&) {}, all, Outcome::refused, [](General& g) { g.removeVictim(); }},
    {"the key gone since", [](General&) {}, all, Outcome::refused, [](General& g) { g.removeRun(); }},
    {"the key made anew without it", [](General&) {}, all, Outcome::refused,
     [](General& g) {
         g.removeRun();
         g.registry.setString(g.machine, run, L"victims", L"x");
     }},
    {"the key made anew with it", [](General&) {}, all, Outcome::removed,
     [](General& g) {
         g.removeRun();
         g.fill(g.machine, run);
     }},
    {"other data since", [](General&) {}, all, Outcome::removed,
     [](General& g) { g.registry.setString(g.machine, run, victim, L"C:\\other.exe"); }},
    {"another type since", [](General&) {}, all, Outcome::removed,
     [](General& g) { g.registry.setNumber(g.machine, run, victim, 7); }},
    {"one more value since", [](General&) {}, all, Outcome::removed,
     [](General& g) { g.registry.setString(g.machine, run, L"new", L"x"); }},
    {"a link in its place since", [](General&) {}, all, Outcome::refused, [](General& g) { g.linkRun(); }},
    {"a link to another key", [](General& g) { g.linkRun(); }, all, Outcome::refused},
    {"a link to nowhere",
     [](General& g) {
         g.removeRun();
         g.registry.makeLink(g.machine, run, g.user, L"Software\\nowhere");
     },
     none, Outcome::notListed},
    {"a link to itself",
     [](General& g) {
         g.removeRun();
         g.registry.makeLink(g.machine, run, g.machine, run);
     },
     none, Outcome::notListed, nullptr, enumItems},
    {"two links to each other",
     [](General& g) {
         g.removeRun();
         g.registry.makeLink(g.machine, run, g.machine, runOnce);
         g.registry.makeLink(g.machine, runOnce, g.machine, run);
     },
     none, Outcome::notListed, nullptr, enumItems},
    {"a link to the key above below it",
     [](General& g) { g.registry.makeLink(g.machine, run + L"\\loop", g.machine, currentVersion); }, all,
     Outcome::removed},
    {"keys of the values' names below it",
     [](General& g) { g.registry.setString(g.machine, run + L"\\victim\\a", victim, L"x"); }, all,
     Outcome::removed},
    {"a value of the key's name above it",
     [](General& g) { g.registry.setString(g.machine, currentVersion, L"Run", g.harmless); }, all,
     Outcome::removed},
    {"a value where the key should be",
     [](General& g) {
         g.removeRun();
         g.registry.setString(g.machine, currentVersion, L"Run", g.harmless);
     },
     none, Outcome::notListed},
    {"a key where the value should be",
     [](General& g) {
         g.removeVictim();
         g.registry.makeKey(g.machine, run + L"\\victim");
     },
     L"a; z; user's; ", Outcome::notListed},
    {"the same name in other letters for the user",
     [](General& g) { g.registry.setString(g.user, run, L"VICTIM", g.harmless); },
     L"a; victim; z; user's; VICTIM; ", Outcome::removed},
    {"the name in other letters since", [](General&) {}, all, Outcome::removed,
     [](General& g) {
         g.removeVictim();
         g.registry.setString(g.machine, run, L"VicTim", g.harmless);
     }},
    // The policy builder has no trap of its own: an error in it ends the enumeration, and what was found
    // stays.
    {"a policy key refused",
     [](General& g) {
         g.registry.setString(g.machine, policy, L"policy", g.harmless);
         g.restrict(g.machine, policy, 0);
     },
     all, Outcome::removed, nullptr, enumItems},
    {"another tab's key refused",
     [](General& g) {
         g.registry.makeKey(g.machine, L"SYSTEM\\CurrentControlSet\\Services");
         g.restrict(g.machine, L"SYSTEM\\CurrentControlSet\\Services", 0);
     },
     all, Outcome::removed},
};

void check(const HostileKey<General>& row) {
    General g;
    g.fill(g.machine, run);
    g.registry.setString(g.user, run, L"user's", g.harmless);
    row.seed(g);
    const int handles = openHandles();
    const auto items = g.listed(g.category);
    CHECK(g.namesOf(items) == row.listed);
    for (const LogLine& line : g.log.lines) CHECK(line.source == (row.logged ? row.logged : L"none"));
    CHECK(g.log.lines.empty() == !row.logged);
    const startup::StartupItem* item = nullptr;
    for (const auto& each : items) {
        g.checkHarmless(g.category, each);
        if (each.entryName() == victim) item = &each;
    }
    CHECK((item == nullptr) == (row.outcome == Outcome::notListed));
    // With the first row Windows opens some for good.
    if (&row != rows) CHECK(openHandles() == handles);
    if (!item) return;
    if (row.change) row.change(g);
    Snapshot expected = snapshot();
    CHECK(g.category.deleteItem(*item, item->name(), g.logger).succeeded ==
          (row.outcome == Outcome::removed));
    if (row.outcome == Outcome::removed) {
        std::erase_if(expected.keys[L"HKEY_LOCAL_MACHINE\\" + run],
                      [](const auto& value) { return win32::sameIgnoringCase(value.first, victim); });
    }
    CHECK(snapshot() == expected);
}

}  // namespace

TEST_CASE("general: what becomes of an entry whose key is refused, gone, changed or a link") {
    const bool hasLinks = win32::flavour() == win32::Flavour::wide;
    for (const HostileKey<General>& row : rows) {
        CAPTURE(std::string(row.what));
        // Windows 9x has no links: there they are followed like keys.
        if (hasLinks || std::string(row.what).find("link") == std::string::npos) check(row);
    }
}

TEST_CASE_FIXTURE(General, "general: 10,000 values are listed, and one is deleted alone") {
    for (int i = 0; i < 10000; ++i) {
        registry.setString(machine, run, L"value " + std::to_wstring(i), L"C:\\nowhere\\x.exe");
    }
    registry.setString(machine, run, victim, harmless);
    const auto items = listed(category);
    REQUIRE(items.size() == 10001);
    Snapshot expected = snapshot();
    CHECK(items.back().entryName() == victim);
    checkHarmless(category, items.back());
    CHECK(category.deleteItem(items.back(), items.back().name(), logger).succeeded);
    expected.keys[L"HKEY_LOCAL_MACHINE\\" + run].erase(victim);
    CHECK(snapshot() == expected);
    CHECK(log.lines.empty());
}
