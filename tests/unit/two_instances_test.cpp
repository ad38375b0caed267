// What two running programs do to each other's files.
#include <doctest/doctest.h>

#include <algorithm>

#include "app/backup.h"
#include "helmkit/client/registry_access.h"
#include "startup/ucOther.h"
#include "startup/way_back.h"
#include "tests/support/failing_classes.h"
#include "tests/support/hostile_ground.h"
#include "win32/files/file_replacement.h"
#include "win32/files/file_search.h"
#include "win32/files/files.h"

namespace {

const std::wstring winlogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const LONG shell = 5;

struct Two : HostileGround {
    FailingClasses failing{classes};
    bool hasHappened = false;

    // The other program's step, at the moment when this one begins to write a file.
    void whileWriting(std::function<void()> step) {
        whenAsked() = [this, step](const std::wstring& what) {
            if (what.find(L"WriteTextFile ") == 0 && !std::exchange(hasHappened, true)) step();
        };
    }
    void keep() {
        helmkit::RegistryAccess access;
        startup::WayBack(access, startup::specialPlace(shell), files::GetWindowsFolders());
    }
    std::wstring heldBy(const std::wstring& file) {
        for (const auto& [key, values] : snapshotOf(registryFile(file)).keys) {
            for (const auto& [name, value] : values)
                return win32::fromAnsi(std::string(value.data.begin(), value.data.end()));
        }
        return {};
    }
};

}  // namespace

TEST_CASE_FIXTURE(Two, "two ways back of one moment get a file each") {
    registry.setString(HKEY_LOCAL_MACHINE, winlogon, L"shell", L"first.exe");
    whileWriting([&] {
        registry.setString(HKEY_LOCAL_MACHINE, winlogon, L"shell", L"second.exe");
        keep();
    });
    keep();
    std::vector<std::wstring> files = keptFiles();
    std::sort(files.begin(), files.end());
    REQUIRE(files.size() == 2);
    CHECK(heldBy(files[0]) != heldBy(files[1]));
}

TEST_CASE_FIXTURE(Two, "a way back that cannot be written leaves no empty file") {
    registry.setString(HKEY_LOCAL_MACHINE, winlogon, L"shell", L"first.exe");
    whenAsked() = [](const std::wstring& what) {
        if (what.find(L"WriteTextFile ") == 0) refused() = {what};
    };
    CHECK_THROWS_AS(keep(), win32::Error);
    CHECK(keptFiles().empty());
}

TEST_CASE_FIXTURE(Two, "two backups of one second leave one whole file") {
    for (int i = 0; i < 500; ++i) {
        registry.setString(HKEY_LOCAL_MACHINE, run, L"value " + std::to_wstring(i), L"C:\\nowhere\\x.exe");
    }
    bool wroteBoth = false;
    whileWriting([&] {
        app::writeBackup(logger, folder.path());
        wroteBoth = true;
    });
    app::writeBackup(logger, folder.path());
    CHECK(wroteBoth);
    checkExport(registryFile(folder.file(L"Backup\\Backup Nov 20, 2026 23-35-47.reg")), snapshot());
    CHECK(log.lines.empty());
    WIN32_FIND_DATAW found;
    win32::OwnedFind search(::FindFirstFileW(folder.file(L"Backup\\*").c_str(), &found));
    int files = 0;
    do {
        files += !(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
    } while (::FindNextFileW(search.get(), &found));
    CHECK(files == 1);
}

TEST_CASE_FIXTURE(
    PageFixture,
    "a file that another program makes, or takes away, while it is written is replaced all the same") {
    const std::wstring path = folder.file(L"backup.reg");
    const int before = folder.count();
    win32::FileReplacement late(path);
    late.write("late", 4);
    win32::replaceFile(path, "in between");
    late.commit();
    CHECK(TempFolder::read(path) == "late");
    win32::FileReplacement later(path);
    later.write("later", 5);
    win32::removeFile(path);
    later.commit();
    CHECK(TempFolder::read(path) == "later");
    CHECK(folder.count() == before + 1);
}

TEST_CASE_FIXTURE(PageFixture, "two log writers at once: every line is whole and in its order") {
    const std::wstring full = folder.file(L"QLN.log"), brief = folder.file(L"short.log");
    helmkit::Logger loggers[] = {helmkit::Logger::create(), helmkit::Logger::create()};
    for (auto& each : loggers) each.OpenLogs(full, brief);
    const int lines = 2000;
    for (int i = 0; i < lines; ++i) {
        for (int writer : {0, 1}) {
            const std::wstring text = std::to_wstring(writer) + L' ' + std::to_wstring(i) + L' ' +
                                      std::wstring(i % 300, writer ? L'x' : L'y');
            loggers[writer].WriteLog(0, text, 4, L"test");
        }
    }
    for (const std::wstring& path : {full, brief}) {
        const std::string contents = TempFolder::read(path);
        int next[] = {0, 0};
        size_t at = 0;
        for (size_t end; (end = contents.find("\r\n", at)) != std::string::npos; at = end + 2) {
            const std::string line = contents.substr(at, end - at);
            const std::string text = line.substr(line.rfind('\t') + 1);
            const int writer = text[0] - '0';
            REQUIRE((writer == 0 || writer == 1));
            const int number = next[writer]++;
            const std::string expected = text.substr(0, 2) + std::to_string(number) + ' ' +
                                         std::string(number % 300, writer ? 'x' : 'y');
            REQUIRE(text == expected);
        }
        CHECK(at == contents.size());
        CHECK(next[0] == lines);
        CHECK(next[1] == lines);
    }
}
