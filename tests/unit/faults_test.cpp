// Every Windows call of a refresh, a deletion, a restore, a backup and a start fails in its turn.
#include <doctest/doctest.h>

#include <algorithm>
#include <set>

#include "app/FMain.h"
#include "app/backup.h"
#include "startup/ucOther.h"
#include "startup/ucRun.h"
#include "startup/ucServices.h"
#include "startup/ucWinlogon.h"
#include "tests/support/faults.h"
#include "tests/support/one_entry_a_place.h"
#include "tests/support/page_fixture.h"
#include "win32/base/flavour.h"
#include "win32/base/utf16_bytes.h"
#include "win32/files/file_search.h"
#include "win32/system/system.h"

namespace {

// Before anything of the product looks a function up.
[[maybe_unused]] const bool isMadeFailing = (makeFailing(::GetModuleHandleW(nullptr)), true);

using startup::SpecialPlace;

const std::wstring backups = win32::moduleFolder(nullptr) + L"\\Backup";
// Whoever looks at a file so is told no more than that there is none, or none with a version.
bool isLook(const std::string& function) {
    for (const char* look :
         {"GetFileAttributes", "FindFirstFile", "SearchPath", "VirtualAlloc", "GetFileVersionInfo"}) {
        if (function.find(look) == 0) return true;
    }
    return false;
}

// A line that there is no memory to hand on for is lost, and nothing else.
bool isLostLine(const std::string& function) {
    return function == "SysAllocStringLen";
}

struct Faulty : PageFixture {
    helmkit::Logger logger = log.logger();

    Faulty() {
        emptyBackups();
        seedOneEntryAPlace(folder, windows);
    }
    ~Faulty() { emptyBackups(); }

    static std::vector<std::wstring> filesOf(const std::wstring& path) {
        std::vector<std::wstring> names;
        if (!win32::isFolder(path)) return names;
        for (const auto& file : win32::filesIn(path)) {
            if (!file.isFolder()) names.push_back(file.name);
        }
        return names;
    }
    static void emptyBackups() {
        for (const std::wstring& name : filesOf(backups)) ::DeleteFileW((backups + L'\\' + name).c_str());
    }

    bool wasLogged(const std::wstring& beginOfSource) const {
        return std::any_of(log.lines.begin(), log.lines.end(), [&](const LogLine& line) {
            return line.level == helmkit::caughtError && line.source.find(beginOfSource) == 0;
        });
    }
    bool wasTold(const wchar_t* text) const {
        return std::any_of(desktop.messageBoxes.begin(), desktop.messageBoxes.end(),
                           [&](const auto& box) { return box.text.find(text) != std::wstring::npos; });
    }
    bool wasDone(const wchar_t* begin) const {
        return std::any_of(log.lines.begin(), log.lines.end(), [&](const LogLine& line) {
            return line.level == helmkit::information && line.text.find(begin) == 0;
        });
    }

    // Runs `act` with each of its calls failing once. `prepare` goes before, `check(function)` behind; the
    // last run is the one that nothing fails in.
    template <class Prepare, class Act, class Check>
    void everyCall(size_t least, Prepare prepare, Act act, Check check) {
        std::string failed = "none";
        for (size_t number = 1; !failed.empty(); ++number) {
            prepare();
            log.lines.clear();
            desktop.messageBoxes.clear();
            desktop.messageBoxAnswers.assign(5, IDOK);
            {
                Fault fault(number, faultErrors[number % std::size(faultErrors)]);
                act();
                failed = Fault::failed() ? Fault::failed() : "";
                if (failed.empty()) CHECK(Fault::calls() > least);
            }
            desktop.messageBoxAnswers.clear();
            CAPTURE(number);
            CAPTURE(failed);
            check(failed);
        }
    }
};

// A page with the rows that it has where nothing fails.
template <class Category>
struct Shown {
    PageOf<Category> page;
    std::vector<startup::ListedRow> rows;

    explicit Shown(Faulty& faulty) : page(faulty.parent.handle()) {
        page.Init(faulty.logger);
        rows = page.rows();
    }
    size_t differing() {
        const auto now = page.rows();
        size_t count = 0;
        for (const auto& row : rows) {
            count += std::none_of(now.begin(), now.end(), [&](const auto& other) {
                return row.text == other.text && row.second == other.second && row.file == other.file;
            });
        }
        return count;
    }
    void press() { PageFixture::press(page, 103); }
};

template <class Category>
void refreshes(Faulty& faulty, const std::wstring& name, size_t expected) {
    Shown<Category> shown(faulty);
    REQUIRE(shown.rows.size() == expected);
    faulty.everyCall(
        10, [] {}, [&] { shown.page.RefreshList(); },
        [&](const std::string& failed) {
            const size_t differing = shown.differing();
            if (!faulty.log.lines.empty()) {
                CHECK(faulty.wasLogged(name + L"."));
            } else if (isLook(failed)) {
                // The two places of win.ini are read at once.
                CHECK(differing <= 2);
            } else {
                CHECK(differing == 0);
            }
        });
    CHECK(shown.differing() == 0);
}

}  // namespace

TEST_CASE_FIXTURE(Faulty, "faults: every call of a refresh") {
    refreshes<startup::ucRun>(*this, L"ucRun", std::size(startup::runKeys) + std::size(startup::policyHives));
    refreshes<startup::ucWinlogon>(*this, L"ucWinlogon", 1);
    refreshes<startup::ucOther>(*this, L"ucOther", startup::specialPlaces().size());
    refreshes<startup::ucServices>(*this, L"ucServices", 1);
}

TEST_CASE_FIXTURE(Faulty, "faults: every call of a deletion on the general page") {
    const std::wstring key = startup::runKeys[0].keyPath;
    registry.setString(HKEY_LOCAL_MACHINE, key, L"other", L"C:\\nowhere\\other.exe");
    const std::string before = registry.bytes(HKEY_LOCAL_MACHINE, key, L"entry");
    Shown<startup::ucRun> shown(*this);
    everyCall(
        20,
        [&] {
            registry.setBytes(HKEY_LOCAL_MACHINE, key, L"entry", REG_SZ, before);
            shown.page.RefreshList();
            shown.page.ListViewObject().select(0);
        },
        [&] { shown.press(); },
        [&](const std::string& failed) {
            const bool isGone = !registry.hasValue(HKEY_LOCAL_MACHINE, key, L"entry");
            CHECK(registry.hasValue(HKEY_LOCAL_MACHINE, key, L"other"));
            CHECK((wasDone(L"Deleting common(") || isLostLine(failed)) >= isGone);
            CHECK(wasTold(L"deleted from startup successfully") <= isGone);
            CHECK((wasTold(L"deleted from startup successfully") || wasLogged(L"ucRun.cmdDelete_Click")) >=
                  isGone);
            if (!isGone) CHECK((desktop.messageBoxes.size() == 2 || wasLogged(L"ucRun.")));
        });
}

TEST_CASE_FIXTURE(Faulty, "faults: a name that stands for two values never deletes one of them") {
    if (win32::flavour() == win32::Flavour::wide) return;
    const std::wstring key = startup::runKeys[0].keyPath;
    Shown<startup::ucRun> shown(*this);
    everyCall(
        20,
        [&] {
            for (const wchar_t* name : {L"?", L"\x416"})
                registry.setString(HKEY_LOCAL_MACHINE, key, name, L"C:\\nowhere\\x.exe");
            shown.page.RefreshList();
            // The registry's order, in which the question mark comes first.
            shown.page.ListViewObject().select(0);
            REQUIRE(shown.page.ListViewObject().text(0, 0) == L"?");
        },
        [&] { shown.press(); },
        [&](const std::string&) {
            for (const wchar_t* name : {L"?", L"\x416"})
                CHECK(registry.hasValue(HKEY_LOCAL_MACHINE, key, name));
            CHECK_FALSE(wasTold(L"deleted from startup successfully"));
        });
}

TEST_CASE_FIXTURE(Faulty, "faults: every call of a deletion on the Winlogon page") {
    const std::wstring key = startup::notifyKeyPath + std::wstring(L"\\package");
    const std::string before = registry.bytes(HKEY_LOCAL_MACHINE, key, L"DLLName");
    Shown<startup::ucWinlogon> shown(*this);
    everyCall(
        20,
        [&] {
            registry.setBytes(HKEY_LOCAL_MACHINE, key, L"DLLName", REG_SZ, before);
            registry.setString(HKEY_LOCAL_MACHINE, key + L"\\below", L"a", L"b");
            shown.page.RefreshList();
            shown.page.ListViewObject().select(0);
        },
        [&] { shown.press(); },
        [&](const std::string& failed) {
            const bool isGone = !registry.hasKey(HKEY_LOCAL_MACHINE, key);
            CHECK((wasDone(L"Deleting Winlogon(") || isLostLine(failed)) >= isGone);
            CHECK(wasTold(L"deleted from startup successfully") <= isGone);
            CHECK((wasTold(L"deleted from startup successfully") ||
                   wasLogged(L"ucWinlogon.cmdDelete_Click")) >= isGone);
            if (!isGone) CHECK((desktop.messageBoxes.size() == 2 || wasLogged(L"ucWinlogon.")));
        });
}

namespace {

// One place of the custom page that is set back.
struct Restored {
    Faulty& faulty;
    const SpecialPlace& place;
    Shown<startup::ucOther> shown{faulty};
    std::wstring iniFile = faulty.windows + L'\\' + place.location;
    std::string before = held(), kept = {};

    // What stands there, with its type; of a key one word.
    std::string held() {
        HKEY root = hiveOf(place.hive);
        if (place.kind == startup::PlaceKind::iniLine) return TempFolder::read(iniFile);
        if (place.kind == startup::PlaceKind::runOnceEx)
            return faulty.registry.hasKey(root, place.location + std::wstring(L"\\0001")) ? "there" : "";
        DWORD type = 0;
        if (!faulty.registry.hasValue(root, place.location, place.name)) return {};
        const std::string bytes = faulty.registry.bytes(root, place.location, place.name, &type);
        return std::to_string(type) + bytes;
    }
    void prepare() {
        Faulty::emptyBackups();
        for (const std::wstring& name : Faulty::filesOf(faulty.windows))
            ::DeleteFileW((faulty.windows + L'\\' + name).c_str());
        for (const SpecialPlace& other : startup::specialPlaces()) {
            if (other.kind == startup::PlaceKind::iniLine) seedPlace(other, faulty.folder, faulty.windows);
        }
        if (place.kind == startup::PlaceKind::iniLine)
            ::SetFileAttributesW(iniFile.c_str(), FILE_ATTRIBUTE_HIDDEN);
        if (place.kind != startup::PlaceKind::iniLine) seedPlace(place, faulty.folder, faulty.windows);
        shown.page.RefreshList();
        for (int row = 0; row < shown.page.ListViewObject().count(); ++row) {
            if (shown.page.ListViewObject().text(row, 0) == place.description)
                shown.page.ListViewObject().select(row);
        }
    }
    void check(const std::string& failed, const std::string& after) {
        const std::string now = held();
        const bool isChanged = now != before;
        CHECK((now == before || now == after));
        const bool isClaimed = faulty.wasTold(L"deleted successfully");
        CHECK(isClaimed <= isChanged);
        CHECK(faulty.wasDone(L"Restored: ") <= isChanged);
        const bool isLogged = faulty.wasLogged(L"ucOther.");
        CHECK((isClaimed || isLogged) >= isChanged);
        if (!isChanged) CHECK(isLogged);
        checkWayBack(failed, isChanged, isLogged);
        // Only the call that gives the attributes may lose them.
        if (place.kind == startup::PlaceKind::iniLine && failed.find("SetFileAttributes") != 0)
            CHECK((::GetFileAttributesW(iniFile.c_str()) & FILE_ATTRIBUTE_HIDDEN) != 0);
        for (const std::wstring& name : Faulty::filesOf(faulty.windows)) {
            CAPTURE(name);
            CHECK((name == L"win.ini" || name == L"system.ini" || failed.find("DeleteFile") == 0));
        }
    }
    // What was there is kept whole, or the log says that it is not.
    void checkWayBack(const std::string& failed, bool isChanged, bool isLogged) {
        const auto files = Faulty::filesOf(backups);
        // Beside it only what could not be deleted may be left.
        CHECK(files.size() <= (failed.find("DeleteFile") == 0 ? 2 : 1));
        CHECK((!files.empty() || isLogged) >= isChanged);
        if (!isChanged) CHECK((files.empty() || isLogged));
        if (files.empty()) return;
        const std::string bytes = TempFolder::read(backups + L'\\' + files[0]);
        if (kept.empty()) kept = bytes;
        CHECK((bytes == kept || isLogged));
    }
};

void restores(Faulty& faulty, const SpecialPlace& place) {
    CAPTURE(place.description);
    Restored restored{faulty, place};
    // First without a fault: what it is when all goes well.
    restored.prepare();
    faulty.desktop.messageBoxAnswers.assign(2, IDOK);
    restored.shown.press();
    const std::string after = restored.held();
    REQUIRE(after != restored.before);
    restored.checkWayBack({}, true, false);
    faulty.everyCall(
        20, [&] { restored.prepare(); }, [&] { restored.shown.press(); },
        [&](const std::string& failed) {
            if (!failed.empty()) restored.check(failed, after);
        });
}

const SpecialPlace& placeNamed(const std::wstring& name, startup::PlaceKind kind) {
    for (const SpecialPlace& place : startup::specialPlaces()) {
        if (place.kind == kind && place.name == name) return place;
    }
    FAIL("no such place");
    return startup::specialPlace(1);
}

}  // namespace

TEST_CASE_FIXTURE(Faulty, "faults: every call of setting a value back") {
    for (const wchar_t* name : {L"shell", L"BootExecute"}) {
        restores(*this, placeNamed(name, startup::PlaceKind::registryValue));
    }
}

TEST_CASE_FIXTURE(Faulty, "faults: every call of setting an ini line back") {
    restores(*this, placeNamed(L"run=", startup::PlaceKind::iniLine));
}

TEST_CASE_FIXTURE(Faulty, "faults: every call of emptying RunOnceEx") {
    restores(*this, placeNamed(L"", startup::PlaceKind::runOnceEx));
}

TEST_CASE_FIXTURE(Faulty, "faults: every call of a backup") {
    const std::wstring here = win32::moduleFolder(nullptr);
    std::string whole;
    emptyBackups();
    app::writeBackup(logger, here);
    REQUIRE(filesOf(backups).size() == 1);
    whole = TempFolder::read(backups + L'\\' + filesOf(backups)[0]);
    everyCall(
        100, [] { emptyBackups(); }, [&] { app::writeBackup(logger, here); },
        [&](const std::string&) {
            const auto files = filesOf(backups);
            CHECK(files.size() <= 1);
            const bool isWhole = files.size() == 1 && TempFolder::read(backups + L'\\' + files[0]) == whole;
            CHECK((isWhole || wasLogged(L"FMain.BackupRegistry")));
            if (files.size() == 1) CHECK(files[0].find(L"Backup ") == 0);
        });
}
