// What somebody changes while a list is read: between its names and their data.
#include <doctest/doctest.h>

#include "app/backup.h"
#include "helmkit/client/registry_access.h"
#include "startup/ucRun.h"
#include "startup/ucServices.h"
#include "startup/ucWinlogon.h"
#include "tests/support/failing_classes.h"
#include "tests/support/hostile_keys.h"
#include "win32/base/utf16_bytes.h"

namespace {

const HKEY machine = HKEY_LOCAL_MACHINE;
const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const std::wstring notify = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify";
const std::wstring services = L"SYSTEM\\CurrentControlSet\\Services";

struct Changes : HostileKeys {
    FailingClasses failing{classes};
    bool hasHappened = false;
    startup::ucRun general;
    startup::ucWinlogon winlogon;
    startup::ucServices allServices;

    Changes() {
        for (const wchar_t* name : {L"a", L"victim", L"z"}) {
            registry.setString(machine, run, name, harmless);
            registry.setString(machine, notify + L"\\" + name, L"DLLName", harmless);
            registry.setString(machine, services + L"\\" + name, L"ImagePath", harmless);
        }
        registry.setString(HKEY_CURRENT_USER, run, L"user's", harmless);
    }
    // Lists, while `event` happens at the question for the first entry's data.
    std::vector<startup::StartupItem> listedDuring(const startup::Category& category,
                                                   void (*event)(Changes&)) {
        whenAsked() = [this, event](const std::wstring& what) {
            if (what.find(L"ReadValue ") == 0 && !std::exchange(hasHappened, true)) event(*this);
        };
        return listed(category);
    }
    // The names with a question mark behind those that were listed without a file.
    static std::wstring shown(const std::vector<startup::StartupItem>& items) {
        std::wstring names;
        for (const auto& item : items) names += item.entryName() + (item.file().empty() ? L"?; " : L"; ");
        return names;
    }
};

struct Row {
    const char* what;
    void (*event)(Changes&);
    const wchar_t *general, *packages, *services;
};

const wchar_t all[] = L"a; victim; z; ";

const Row rows[] = {
    {"nothing", [](Changes&) {}, L"a; victim; z; user's; ", all, all},
    {"an entry goes",
     [](Changes&) {
         helmkit::RegistryAccess().DeleteValue(helmkit::HKLM, run, L"victim");
         helmkit::RegistryAccess().DeleteKey(helmkit::HKLM, notify + L"\\victim");
         helmkit::RegistryAccess().DeleteKey(helmkit::HKLM, services + L"\\victim");
     },
     L"a; victim?; z; user's; ", L"a; victim?; z; ", L"a; z; "},
    {"an entry comes",
     [](Changes& c) {
         c.registry.setString(machine, run, L"new", c.harmless);
         c.registry.setString(machine, notify + L"\\new", L"DLLName", c.harmless);
         c.registry.setString(machine, services + L"\\new", L"ImagePath", c.harmless);
     },
     L"a; victim; z; user's; ", all, all},
    {"all go",
     [](Changes& c) {
         for (const std::wstring& key : {run, notify, services}) {
             c.registry.deleteBelow(machine, key);
             c.registry.deleteKey(machine, key);
         }
     },
     L"a?; victim?; z?; user's; ", L"a?; victim?; z?; ", L""},
    {"all go and come back",
     [](Changes& c) {
         for (const std::wstring& key : {run, notify, services}) {
             c.registry.deleteBelow(machine, key);
             c.registry.deleteKey(machine, key);
         }
         c.registry.setString(machine, run, L"victim", c.harmless);
         c.registry.setString(machine, notify + L"\\victim", L"DLLName", c.harmless);
         c.registry.setString(machine, services + L"\\victim", L"ImagePath", c.harmless);
     },
     L"a?; victim; z?; user's; ", L"a?; victim; z?; ", L"victim; "},
    {"numbers in their places",
     [](Changes& c) {
         c.registry.setNumber(machine, run, L"victim", 7);
         c.registry.setNumber(machine, notify + L"\\victim", L"DLLName", 7);
         c.registry.setNumber(machine, services + L"\\victim", L"ImagePath", 7);
     },
     L"a; victim?; z; user's; ", L"a; victim?; z; ", L"a; z; "},
};

}  // namespace

TEST_CASE("what is changed while it is listed costs itself and nothing else") {
    for (const Row& row : rows) {
        CAPTURE(std::string(row.what));
        const auto listedAs = [&](const startup::Category& (*category)(const Changes&),
                                  const wchar_t* names) {
            Changes c;
            const startup::Category& each = category(c);
            const auto items = c.listedDuring(each, row.event);
            CHECK(c.shown(items) == names);
            for (const auto& item : items) {
                if (!item.file().empty()) c.checkHarmless(each, item);
            }
            CHECK(c.log.lines.empty());
        };
        listedAs([](const Changes& c) -> const startup::Category& { return c.general; }, row.general);
        listedAs([](const Changes& c) -> const startup::Category& { return c.winlogon; }, row.packages);
        listedAs([](const Changes& c) -> const startup::Category& { return c.allServices; }, row.services);
    }
}
