// What is kept of a custom place before it is set back.
#include <doctest/doctest.h>

#include <algorithm>

#include "startup/ucOther.h"
#include "tests/support/page_fixture.h"
#include "tests/support/reg_reader.h"
#include "win32/files/file_search.h"
#include "win32/system/system.h"

namespace {

const std::wstring winlogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
const std::wstring runOnceEx = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx";
const std::wstring when = L"Nov 20, 2026 23-35-47";

std::wstring backupFolder() {
    return win32::moduleFolder(nullptr) + L"\\Backup";
}

struct Restoring : PageFixture {
    PageOf<startup::ucOther> page{parent.handle()};
    win32::ListView& list = page.ListViewObject();

    Restoring() { removeKept(); }
    ~Restoring() { removeKept(); }
    static void removeKept() {
        if (!win32::isFolder(backupFolder())) return;
        for (const auto& file : win32::filesIn(backupFolder())) {
            if (file.name.find(L"Backup ") != 0) win32::removeFile(backupFolder() + L'\\' + file.name);
        }
    }
    static std::vector<std::wstring> kept() {
        std::vector<std::wstring> names;
        if (!win32::isFolder(backupFolder())) return names;
        for (const auto& file : win32::filesIn(backupFolder())) {
            if (file.name.find(L"Backup ") != 0) names.push_back(file.name);
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    static std::string contents(const std::wstring& name) {
        return TempFolder::read(backupFolder() + L'\\' + name);
    }
    void restoreFirst(std::deque<int> answers = {IDOK, IDOK}) {
        helmkit::Logger logger = log.logger();
        page.Init(logger);
        list.select(0);
        desktop.messageBoxAnswers = answers;
        press(page, 103);
    }
};

}  // namespace

TEST_CASE_FIXTURE(Restoring, "a value is kept in the form of the backup") {
    registry.setString(HKEY_LOCAL_MACHINE, winlogon, L"shell", L"evil \"x\".exe");
    restoreFirst();
    REQUIRE(kept() == std::vector<std::wstring>{L"Restored " + when + L".reg"});
    const std::wstring expected = L"\xFEFFWindows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\" +
                                  winlogon + L"]\r\n\"shell\"=\"evil \\\"x\\\".exe\"\r\n";
    CHECK(contents(kept()[0]) ==
          std::string(reinterpret_cast<const char*>(expected.data()), 2 * expected.size()));
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].text == L"Restored: OS shell particular to the computer (for any user)");
}

TEST_CASE_FIXTURE(Restoring, "RunOnceEx is kept with all that is below it") {
    registry.setString(HKEY_CURRENT_USER, runOnceEx, L"Title", L"t");
    registry.setString(HKEY_CURRENT_USER, runOnceEx + L"\\0001\\deep", L"v", L"d");
    restoreFirst();
    REQUIRE(kept().size() == 1);
    const std::string bytes = contents(kept()[0]);
    std::wstring text(reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / 2);
    CHECK(text.find(L"RunOnceEx]\r\n\"Title\"=\"t\"") != std::wstring::npos);
    CHECK(text.find(L"RunOnceEx\\0001\\deep]\r\n\"v\"=\"d\"") != std::wstring::npos);
    CHECK_FALSE(registry.hasKey(HKEY_CURRENT_USER, runOnceEx + L"\\0001"));
}

TEST_CASE_FIXTURE(Restoring, "an ini file is kept byte for byte") {
    const std::string before("[windows]\nload=x\r\n\0\x80\xFF\xE4 tail", 28);
    TempFolder::write(windows + L"\\win.ini", before);
    restoreFirst();
    REQUIRE(kept() == std::vector<std::wstring>{L"win " + when + L".ini"});
    CHECK(contents(kept()[0]) == before);
    CHECK(TempFolder::read(windows + L"\\win.ini") != before);
    TempFolder::write(windows + L"\\win.ini", "");
    TempFolder::write(windows + L"\\system.ini", "[boot]\r\nshell=evil.exe\r\n");
    restoreFirst();
    CHECK(kept() == std::vector<std::wstring>{L"system " + when + L".ini", L"win " + when + L".ini"});
}

TEST_CASE_FIXTURE(Restoring, "a file that is there is never replaced") {
    for (const wchar_t* shell : {L"one.exe", L"two.exe", L"three.exe"}) {
        registry.setString(HKEY_LOCAL_MACHINE, winlogon, L"shell", shell);
        restoreFirst();
    }
    CHECK(kept() == std::vector<std::wstring>{L"Restored " + when + L" (2).reg",
                                              L"Restored " + when + L" (3).reg",
                                              L"Restored " + when + L".reg"});
    CHECK(contents(L"Restored " + when + L".reg").find("o\0n\0e", 0, 5) != std::string::npos);
    CHECK(contents(L"Restored " + when + L" (3).reg").find("t\0h\0r", 0, 5) != std::string::npos);
}

TEST_CASE_FIXTURE(Restoring, "where nothing was changed, nothing is kept") {
    // Read-only: it can be read and not be replaced.
    TempFolder::write(windows + L"\\win.ini", "run=x\r\n");
    ::SetFileAttributesW((windows + L"\\win.ini").c_str(), FILE_ATTRIBUTE_READONLY);
    restoreFirst({IDOK});
    ::SetFileAttributesW((windows + L"\\win.ini").c_str(), FILE_ATTRIBUTE_NORMAL);
    CHECK(kept().empty());
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].level == 4);
    CHECK(TempFolder::read(windows + L"\\win.ini") == "run=x\r\n");
}

TEST_CASE_FIXTURE(Restoring,
                  "a way back that cannot be written is logged, and the place is set back all the same") {
    registry.setString(HKEY_LOCAL_MACHINE, winlogon, L"shell", L"evil.exe");
    // A file where the folder is to be.
    const std::wstring aside = backupFolder() + L" aside";
    const bool hadFolder = ::MoveFileW(backupFolder().c_str(), aside.c_str());
    TempFolder::write(backupFolder(), "no folder");
    restoreFirst();
    ::DeleteFileW(backupFolder().c_str());
    if (hadFolder) ::MoveFileW(aside.c_str(), backupFolder().c_str());
    REQUIRE(log.lines.size() == 2);
    CHECK(log.lines[0].level == 4);
    CHECK(log.lines[0].source == L"ucOther.cmdDelete_Click");
    CHECK(log.lines[0].text.find(L"Backup") != std::wstring::npos);
    CHECK(log.lines[1].text.find(L"Restored: ") == 0);
    CHECK(list.text(0, 1) == L"Explorer.exe");
}
