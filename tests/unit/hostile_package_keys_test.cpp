// Winlogon and services: keys that are refused, gone, changed or links.
#include <doctest/doctest.h>

#include "startup/ucServices.h"
#include "startup/ucWinlogon.h"
#include "tests/support/hostile_keys.h"
#include "win32/base/flavour.h"

namespace {

const std::wstring winlogonKey = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
const std::wstring notify = winlogonKey + L"\\Notify";
const std::wstring servicesKey = L"SYSTEM\\CurrentControlSet\\Services";
const std::wstring victim = L"victim", precious = L"Software\\precious";

// The same rows hold for both: only what an entry's key holds differs, and that services stay.
struct Keys : HostileKeys {
    std::wstring place, valueName;

    void use(const std::wstring& key, const wchar_t* value) {
        place = key;
        valueName = value;
        for (const wchar_t* name : {L"a", L"victim", L"z"}) fill(name);
    }
    std::wstring entry(const std::wstring& name = victim) const { return place + L"\\" + name; }
    void fill(const std::wstring& name) {
        registry.setString(machine, entry(name), valueName, harmless);
        registry.setString(machine, entry(name), L"Group", L"x");
    }
    // What a deletion that went astray would take.
    void linkTo(const std::wstring& path) {
        registry.setString(user, precious, valueName, harmless);
        registry.setString(user, precious + L"\\below", L"v", L"kept");
        registry.makeLink(machine, path, user, precious);
    }
    void removeVictim() { registry.deleteKey(machine, entry()); }
    // The place itself leads to another key with the same entries.
    void linkPlace() {
        registry.deleteBelow(machine, place);
        registry.deleteKey(machine, place);
        registry.makeLink(machine, place, user, L"Software\\target");
        for (const wchar_t* name : {L"a", L"victim", L"z"})
            registry.setString(user, L"Software\\target\\" + std::wstring(name), valueName, harmless);
    }
};

const wchar_t all[] = L"a; victim; z; ", others[] = L"a; z; ";
const wchar_t enumItems[] = L".EnumItems", fillItemInfo[] = L".FillItemInfo";

const HostileKey<Keys> rows[] = {
    {"as it should be", [](Keys&) {}, all, Outcome::removed},
    {"the list refused", [](Keys& k) { k.restrict(k.machine, k.place, KEY_QUERY_VALUE); }, L"",
     Outcome::notListed, nullptr, enumItems},
    {"refused for reading", [](Keys& k) { k.restrict(k.machine, k.entry(), DELETE | KEY_WRITE); }, others,
     Outcome::notListed, nullptr, fillItemInfo},
    // Wine lets everybody delete: who may not look into a key stands for who may not delete it.
    {"refused for all but deleting since", [](Keys&) {}, all, Outcome::refused,
     [](Keys& k) { k.restrict(k.machine, k.entry(), DELETE); }},
    {"a key below it refused",
     [](Keys& k) {
         k.registry.makeKey(k.machine, k.entry() + L"\\1");
         k.registry.makeKey(k.machine, k.entry() + L"\\2\\deep");
         k.registry.makeKey(k.machine, k.entry() + L"\\3");
         k.restrict(k.machine, k.entry() + L"\\2\\deep", DELETE);
     },
     all, Outcome::refused},
    {"gone since", [](Keys&) {}, all, Outcome::refused, [](Keys& k) { k.removeVictim(); }},
    {"all gone since", [](Keys&) {}, all, Outcome::refused,
     [](Keys& k) {
         k.registry.deleteBelow(k.machine, k.place);
         k.registry.deleteKey(k.machine, k.place);
     }},
    {"made anew since", [](Keys&) {}, all, Outcome::removed,
     [](Keys& k) {
         k.removeVictim();
         k.registry.setString(k.machine, k.entry() + L"\\below", L"v", L"x");
     }},
    {"other data since", [](Keys&) {}, all, Outcome::removed,
     [](Keys& k) { k.registry.setString(k.machine, k.entry(), k.valueName, L"C:\\other.dll"); }},
    {"a link",
     [](Keys& k) {
         k.removeVictim();
         k.linkTo(k.entry());
     },
     all, Outcome::removed},
    {"a link in its place since", [](Keys&) {}, all, Outcome::removed,
     [](Keys& k) {
         k.removeVictim();
         k.linkTo(k.entry());
     }},
    {"a link below it", [](Keys& k) { k.linkTo(k.entry() + L"\\link"); }, all, Outcome::removed},
    {"a link below it to itself",
     [](Keys& k) { k.registry.makeLink(k.machine, k.entry() + L"\\loop", k.machine, k.entry()); }, all,
     Outcome::removed},
    {"a link below it to the list",
     [](Keys& k) { k.registry.makeLink(k.machine, k.entry() + L"\\loop", k.machine, k.place); }, all,
     Outcome::removed},
    {"a link among keys below it",
     [](Keys& k) {
         k.registry.makeKey(k.machine, k.entry() + L"\\1");
         k.linkTo(k.entry() + L"\\2");
         k.registry.makeKey(k.machine, k.entry() + L"\\3");
     },
     all, Outcome::removed},
    {"the list a link", [](Keys& k) { k.linkPlace(); }, all, Outcome::refused},
    {"the list a link since", [](Keys&) {}, all, Outcome::refused, [](Keys& k) { k.linkPlace(); }},
    {"the list a link to itself",
     [](Keys& k) {
         k.registry.deleteBelow(k.machine, k.place);
         k.registry.deleteKey(k.machine, k.place);
         k.registry.makeLink(k.machine, k.place, k.machine, k.place);
     },
     L"", Outcome::notListed, nullptr, enumItems},
    {"a value where the key should be",
     [](Keys& k) {
         k.removeVictim();
         k.registry.setString(k.machine, k.place, victim, k.harmless);
     },
     others, Outcome::notListed},
    {"values of the entries' names", [](Keys& k) { k.registry.setString(k.machine, k.place, victim, L"x"); },
     all, Outcome::removed},
    {"a key where the value should be beside it",
     [](Keys& k) { k.registry.makeKey(k.machine, k.entry() + L"\\" + k.valueName); }, all, Outcome::removed},
    {"a deep tree below it",
     [](Keys& k) {
         std::wstring path = k.entry();
         for (int depth = 0; depth < 200; ++depth) path += L"\\k";
         k.registry.setString(k.machine, path, L"v", L"x");
     },
     all, Outcome::removed},
    {"a wide tree below it",
     [](Keys& k) {
         for (int i = 0; i < 300; ++i) {
             k.registry.setString(k.machine, k.entry() + L"\\" + std::to_wstring(i), L"v", L"x");
         }
     },
     all, Outcome::removed},
    {"a name with a NUL below it",
     [](Keys& k) { k.registry.makeCountedKey(k.machine, k.entry(), std::wstring(L"\0x", 2)); }, all,
     Outcome::refused},
};

void check(Keys& k, const startup::Category& category, const HostileKey<Keys>& row) {
    row.seed(k);
    const int handles = openHandles();
    const auto items = k.listed(category);
    CHECK(k.namesOf(items) == row.listed);
    for (const LogLine& line : k.log.lines)
        CHECK(line.source == category.design().typeName + std::wstring(row.logged ? row.logged : L"none"));
    CHECK(k.log.lines.empty() == !row.logged);
    const startup::StartupItem* item = nullptr;
    for (const auto& each : items) {
        k.checkHarmless(category, each);
        if (each.entryName() == victim) item = &each;
    }
    CHECK((item == nullptr) == (row.outcome == Outcome::notListed));
    if (item) {
        if (row.change) row.change(k);
        Snapshot expected = snapshot();
        const bool removed = category.design().deletes && row.outcome == Outcome::removed;
        const int before = row.change ? openHandles() : handles;
        CHECK(category.deleteItem(*item, item->name(), k.logger).succeeded == removed);
        if (removed) expected.erase(L"HKEY_LOCAL_MACHINE\\" + k.entry());
        CHECK(snapshot() == expected);
        // With the first row Windows opens some for good.
        if (&row != rows) CHECK(openHandles() == before);
    }
}

// Windows 9x has no links, and no names with NULs.
bool isPlayed(const HostileKey<Keys>& row) {
    const std::string what = row.what;
    return win32::flavour() == win32::Flavour::wide ||
           (what.find("link") == std::string::npos && what.find("NUL") == std::string::npos);
}

}  // namespace

TEST_CASE("Winlogon: what becomes of a package whose key is refused, gone, changed or a link") {
    for (const auto& row : rows) {
        CAPTURE(std::string(row.what));
        Keys k;
        k.use(notify, L"DLLName");
        if (isPlayed(row)) check(k, startup::ucWinlogon(), row);
    }
}

TEST_CASE("services: what becomes of a service whose key is refused, gone, changed or a link") {
    for (const auto& row : rows) {
        CAPTURE(std::string(row.what));
        Keys k;
        k.use(servicesKey, L"ImagePath");
        if (isPlayed(row)) check(k, startup::ucServices(), row);
    }
}

TEST_CASE_FIXTURE(Keys, "Winlogon: 3,000 packages are listed, and one is deleted alone") {
    use(notify, L"DLLName");
    for (int i = 0; i < 3000; ++i) fill(L"package " + std::to_wstring(i));
    const startup::ucWinlogon category;
    const auto items = listed(category);
    REQUIRE(items.size() == 3003);
    Snapshot expected = snapshot();
    CHECK(items[3001].entryName() == victim);
    CHECK(category.deleteItem(items[3001], items[3001].name(), logger).succeeded);
    expected.erase(L"HKEY_LOCAL_MACHINE\\" + entry());
    CHECK(snapshot() == expected);
}
