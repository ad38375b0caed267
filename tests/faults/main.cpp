// Runs the real program again and again, each time with another of its Windows calls failing:
//
//     faults_driver --faults=N    N calls, chosen by a seed that never changes
//     faults_driver --faults=all
//     faults_driver --fault=N     that call alone
//     faults_driver --rounds=REFRESHES,DELETIONS    no fault; what the program holds may not grow
#define DOCTEST_CONFIG_IMPLEMENT
#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <numeric>
#include <random>
#include <sstream>

#include "tests/faults/driven_program.h"
#include "tests/support/faults.h"
#include "tests/support/one_entry_a_place.h"
#include "tests/support/text.h"
#include "win32/base/text.h"
#include "win32/base/utf8.h"
#include "win32/files/file_search.h"
#include "win32/system/system.h"

namespace {

size_t countOfFaults = 0, onlyFault = 0;
std::pair<size_t, size_t> rounds;

const wchar_t* const programFiles[] = {L"Quillon.exe", L"Helmkit.dll", L"QLNCustom.dll"};

struct Windows {
    TempFolder folder;
    std::wstring windows = folder.file(L"Windows"), program = folder.file(L"Quillon");
    RegistryFixture registry;

    Windows() {
        const std::wstring tests = win32::moduleFolder(nullptr);
        for (const std::wstring& path : {windows, program})
            REQUIRE(::CreateDirectoryW(path.c_str(), nullptr));
        for (const wchar_t* name : programFiles) copy(tests + L"\\..\\program\\", name);
        copy(tests + L'\\', L"injected.dll");
        RegistryFixture::setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion",
                                   L"ProgramFilesDir", folder.path());
        seedOneEntryAPlace(folder, windows);
    }
    void copy(const std::wstring& from, const std::wstring& name) const {
        REQUIRE(::CopyFileW((from + name).c_str(), (program + L'\\' + name).c_str(), FALSE));
    }
};

using Places = std::map<std::wstring, std::string>;

struct Program : Windows {
    std::wstring backups = program + L"\\Backup";
    Places seeded = held(), afterwards;
    std::vector<std::string> goodBackups;

    std::string value(HKEY hive, const std::wstring& key, const std::wstring& name) const {
        DWORD type = 0;
        if (!RegistryFixture::hasValue(hive, key, name)) return {};
        const std::string bytes = RegistryFixture::bytes(hive, key, name, &type);
        return std::to_string(type) + ' ' + bytes;
    }
    // Everything that the presses of a button may change.
    Places held() const {
        Places all;
        all[L"entry"] = value(HKEY_LOCAL_MACHINE, startup::runKeys[0].keyPath, L"entry");
        all[L"package"] =
            value(HKEY_LOCAL_MACHINE, startup::notifyKeyPath + std::wstring(L"\\package"), L"DLLName");
        for (const startup::SpecialPlace& place : startup::specialPlaces()) {
            const std::wstring location = place.location;
            std::string& here = all[place.description];
            if (place.kind == startup::PlaceKind::registryValue)
                here = value(hiveOf(place.hive), location, place.name);
            if (place.kind == startup::PlaceKind::runOnceEx)
                here = value(hiveOf(place.hive), location + L"\\0001", L"1");
            if (place.kind == startup::PlaceKind::iniLine)
                here = TempFolder::read(windows + L'\\' + location);
        }
        return all;
    }
    void prepare() {
        RegistryFixture::setBytes(HKEY_LOCAL_MACHINE, startup::runKeys[0].keyPath, L"entry", REG_SZ,
                                  seeded[L"entry"].substr(2));
        RegistryFixture::setBytes(HKEY_LOCAL_MACHINE, startup::notifyKeyPath + std::wstring(L"\\package"),
                                  L"DLLName", REG_SZ, seeded[L"package"].substr(2));
        for (const startup::SpecialPlace& place : startup::specialPlaces()) seedPlace(place, folder, windows);
        for (const std::wstring& name : {program + L"\\QLN.log", program + L"\\short.log"})
            ::DeleteFileW(name.c_str());
        for (const std::wstring& name : filesOf(backups)) ::DeleteFileW((backups + L'\\' + name).c_str());
    }
    static std::vector<std::wstring> filesOf(const std::wstring& path) {
        std::vector<std::wstring> names;
        if (!win32::isFolder(path)) return names;
        for (const auto& file : win32::filesIn(path)) {
            if (!file.isFolder()) names.push_back(file.name);
        }
        return names;
    }
    DrivenRun run(size_t number) {
        prepare();
        const DWORD error = faultErrors[number % std::size(faultErrors)];
        return drive({.folder = program, .windows = windows, .number = number, .error = error, .rounds = {}});
    }
    std::string log() const {
        const std::wstring path = program + L"\\QLN.log";
        const bool isThere = ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
        return isThere ? TempFolder::read(path) : std::string();
    }
};

bool wasTold(const DrivenRun& run, const std::string& text) {
    return std::any_of(run.boxes.begin(), run.boxes.end(),
                       [&](const std::string& box) { return box.find(text) != std::string::npos; });
}

// A failing look tells that there is nothing; a log that failed tells nothing.
bool isSilent(const std::string& function) {
    for (const char* name :
         {"GetFileAttributes", "FindFirstFile", "SearchPath", "VirtualAlloc", "GetFileVersionInfo",
          "WriteFile", "SetFilePointer", "CreateFile", "GetFileSize"}) {
        if (function.find(name) == 0) return true;
    }
    return false;
}

void checkAfter(Program& program, const DrivenRun& run) {
    const Places now = program.held();
    const std::string log = program.log();
    // 1: a component could not be made, and the box says so; 2: the window could not be.
    CHECK((run.exitCode == 0 || ((run.exitCode == 1 || run.exitCode == 2) && run.boxes.size() == 1)));
    for (const auto& [place, value] : now) {
        CAPTURE(win32::toUtf8(place));
        CHECK((value == program.seeded[place] || value == program.afterwards[place]));
    }
    if (wasTold(run, "is deleted from startup successfully"))
        CHECK((now.at(L"entry").empty() || now.at(L"package").empty()));
    const bool isLogged = log.find("\t4\t") != std::string::npos || log.find("\t3\t") != std::string::npos ||
                          log.find("\t2\t") != std::string::npos;
    const bool isRefused = run.exitCode != 0 || wasTold(run, "Access denied. ");
    if (!isLogged && !isRefused && !isSilent(run.failed)) CHECK(now == program.afterwards);
    for (const std::wstring& name : Program::filesOf(program.backups)) {
        CAPTURE(win32::toUtf8(name));
        const std::string bytes = TempFolder::read(program.backups + L'\\' + name);
        const bool isGood = std::count(program.goodBackups.begin(), program.goodBackups.end(), bytes) > 0;
        CHECK(
            (isGood || isLogged || isRefused || isSilent(run.failed) || run.failed.find("DeleteFile") == 0));
    }
}

}  // namespace

TEST_CASE("the whole program, each time with another call failing") {
    if (!countOfFaults) return;
    Program program;
    const DrivenRun whole = program.run(0);
    REQUIRE(whole.exitCode == 0);
    REQUIRE(whole.calls > 500);
    program.afterwards = program.held();
    CHECK(wasTold(whole, "is deleted from startup successfully"));
    CHECK(program.afterwards[L"entry"].empty());
    CHECK(program.afterwards[L"package"].empty());
    for (const std::wstring& name : Program::filesOf(program.backups))
        program.goodBackups.push_back(TempFolder::read(program.backups + L'\\' + name));
    REQUIRE(program.goodBackups.size() >= 5);

    std::vector<size_t> numbers(whole.calls);
    std::iota(numbers.begin(), numbers.end(), 1);
    std::shuffle(numbers.begin(), numbers.end(), std::mt19937(98));
    numbers.resize(std::min(numbers.size(), countOfFaults));
    if (onlyFault) numbers = {onlyFault};
    for (size_t number : numbers) {
        CAPTURE(number);
        const DrivenRun run = program.run(number);
        CAPTURE(run.failed);
        CAPTURE(run.exitCode);
        CHECK(!run.failed.empty());
        checkAfter(program, run);
    }
    std::printf("%u calls, %u of them failed in turn\n", static_cast<unsigned>(whole.calls),
                static_cast<unsigned>(numbers.size()));
}

TEST_CASE("what the program holds does not grow") {
    if (!rounds.first) return;
    Program program;
    program.prepare();
    const DrivenRun run = drive({.folder = program.program,
                                 .windows = program.windows,
                                 .number = 0,
                                 .error = 0,
                                 .rounds = rounds,
                                 .patience = 3600000});
    CHECK(run.exitCode == 0);
    REQUIRE(run.resources.size() == 11);
    std::printf("handles, GDI objects, USER objects, private KiB:\n");
    for (const std::string& line : run.resources) std::printf("%s\n", line.c_str());
    std::array<long, 4> first = {}, last = {};
    for (auto [from, to] : {std::pair{&run.resources[1], &first}, std::pair{&run.resources.back(), &last}}) {
        std::istringstream words(*from);
        for (long& number : *to) words >> number;
    }
    for (long number : first) CHECK(number > 0);
    for (size_t i : {0, 1, 2}) CHECK(last[i] <= first[i]);
    // Heaps settle; what grew by every round would be more.
    CHECK(last[3] <= first[3] + 512);
}

int main(int count, char** arguments) {
    for (int i = 1; i < count; ++i) {
        const std::string text = arguments[i];
        if (text == "--faults=all")
            countOfFaults = static_cast<size_t>(-1);
        else if (text.find("--faults=") == 0)
            countOfFaults = std::stoul(text.substr(9));
        if (text.find("--fault=") == 0) countOfFaults = 1, onlyFault = std::stoul(text.substr(8));
        if (text.find("--rounds=") == 0)
            rounds = {std::stoul(text.substr(9)), std::stoul(text.substr(text.find(',') + 1))};
    }
    doctest::Context context(count, arguments);
    return context.run();
}
