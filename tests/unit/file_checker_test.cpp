#include <doctest/doctest.h>

#include "files/CFileChecker.h"
#include "files/checksum.h"
#include "files/explorer.h"
#include "files/file_checksum.h"
#include "files/file_properties.h"
#include "files/windows_folders.h"
#include "tests/support/page_fixture.h"
#include "tests/support/replaced_import.h"
#include "win32/base/path.h"
#include "win32/files/files.h"
#include "win32/system/system.h"

namespace {

// A file that is found and gone when its long name is asked for.
template <class Char>
DWORD WINAPI findWhatIsGone(const Char*, const Char* name, const Char*, DWORD room, Char* path, Char**) {
    const size_t length = std::char_traits<Char>::length(name);
    if (length < room) std::char_traits<Char>::copy(path, name, length + 1);
    return static_cast<DWORD>(length < room ? length : length + 1);
}

struct Checker : PageFixture {
    files::CFileChecker checker;
    std::wstring full(const std::wstring& name) { return checker.GetFullFileNameFromShortFilename(name); }
    std::wstring file(const std::wstring& name) {
        TempFolder::write(folder.file(name), "x");
        return win32::longPath(folder.file(name));
    }
};

}  // namespace

TEST_CASE_FIXTURE(Checker, "a file that exists is given by its full name") {
    const std::wstring path = file(L"a.exe");
    CHECK(full(folder.file(L"a.exe")) == path);
    CHECK(full(L"kernel32.dll").size() > std::wstring(L"kernel32.dll").size());
}

TEST_CASE_FIXTURE(Checker, "a native path loses its prefix, found or not") {
    const std::wstring path = file(L"x.sys");
    CHECK(full(L"\\??\\" + path) == path);
    CHECK(full(L"  \\??\\" + path + L" ") == path);
    CHECK(full(L"\\??\\C:\\nowhere\\y.sys") == L"C:\\nowhere\\y.sys");
}

TEST_CASE_FIXTURE(Checker,
                  "a name that is not found comes back as given, trimmed, and again from the cache") {
    CHECK(full(L"C:\\nowhere\\a.exe") == L"C:\\nowhere\\a.exe");
    CHECK(full(L"C:\\nowhere\\a.exe") == L"C:\\nowhere\\a.exe");
    CHECK(full(L" no such program ") == L"no such program");
    CHECK(full(L"") == L"");
    CHECK(full(L"   ") == L"");
}

TEST_CASE_FIXTURE(Checker, "an answer stays for the checker's life; a new checker looks again") {
    const std::wstring path = file(L"gone.exe");
    const std::wstring alias = folder.file(L".\\gone.exe");
    CHECK(full(alias) == win32::longPath(win32::searchPath(alias)));
    ::DeleteFileW(path.c_str());
    CHECK(full(alias) != alias);
    CHECK(files::CFileChecker().GetFullFileNameFromShortFilename(alias) == alias);
}

TEST_CASE_FIXTURE(Checker,
                  "a name with blanks around it is searched each time, and its first answer is kept") {
    const std::wstring missing = folder.file(L"later.exe");
    CHECK(full(L" " + missing) == missing);
    const std::wstring alias = folder.file(L".\\later.exe");
    CHECK(full(alias) == alias);
    TempFolder::write(missing, "x");
    CHECK(full(alias) == alias);                                             // from the cache
    CHECK(full(L" " + alias) == win32::longPath(win32::searchPath(alias)));  // searched, not stored over
    CHECK(full(alias) == alias);
}

TEST_CASE_FIXTURE(Checker, "short names become long ones on the NT family only") {
    file(L"a long file name.txt");
    wchar_t shortName[MAX_PATH] = L"";
    ::GetShortPathNameW(folder.file(L"a long file name.txt").c_str(), shortName, MAX_PATH);
    const std::wstring given = shortName;
    REQUIRE(given.find(L'~') != std::wstring::npos);
    CHECK(full(given) == win32::longPath(given));
    CHECK(win32::longPath(given).find(L"a long file name.txt") != std::wstring::npos);
    desktop.windowsVersion = ScriptedDesktop::windows98;
    CHECK(files::CFileChecker().GetFullFileNameFromShortFilename(given) == given);
}

TEST_CASE_FIXTURE(Checker, "a failed long path is empty on the NT family; the other asks for none") {
    const ReplacedImport wideCall("SearchPathW", &findWhatIsGone<wchar_t>);
    const ReplacedImport ansiCall("SearchPathA", &findWhatIsGone<char>);
    for (const wchar_t* name : {L"gone.exe", L"no folder\\gone.exe"}) {
        const std::wstring gone = folder.file(name);
        desktop.windowsVersion = ScriptedDesktop::windowsXp;
        CHECK(files::CFileChecker().GetFullFileNameFromShortFilename(gone).empty());
        desktop.windowsVersion = ScriptedDesktop::windows98;
        CHECK(files::CFileChecker().GetFullFileNameFromShortFilename(gone) == gone);
    }
}

TEST_CASE_FIXTURE(Checker, "a path of 2,000 and more characters is not found") {
    const ReplacedImport wideCall("SearchPathW", &findWhatIsGone<wchar_t>);
    const ReplacedImport ansiCall("SearchPathA", &findWhatIsGone<char>);
    for (size_t length : {1998, 1999, 2000, 2001, 3000}) {
        CAPTURE(length);
        const std::wstring path = L"C:\\" + std::wstring(length - 3, L'a');
        CHECK(win32::searchPath(path) == (length < 2000 ? path : std::wstring()));
        if (length >= 2000) CHECK(full(path) == path);
    }
}

TEST_CASE_FIXTURE(PageFixture, "the search folders are those of PATH, empty ones included") {
    Variable path(L"PATH", L"C:\\a;;D:\\b\\;");
    CHECK(files::CFileChecker().searchFolders() ==
          std::vector<std::wstring>{L"C:\\a\\", L"\\", L"D:\\b\\", L"\\"});
}

TEST_CASE_FIXTURE(PageFixture,
                  "the Windows folders are lower-cased, end in a backslash and follow the family") {
    Variable windir(L"windir", L"C:\\WINNT");
    files::WindowsFolders folders = files::GetWindowsFolders();
    CHECK(folders.winDir == L"c:\\winnt\\");
    CHECK(folders.sysDir == L"c:\\winnt\\system32\\");
    desktop.windowsVersion = ScriptedDesktop::windows98;
    Variable withBackslash(L"windir", L"C:\\Windows\\");
    folders = files::GetWindowsFolders();
    CHECK(folders.winDir == L"c:\\windows\\");
    CHECK(folders.sysDir == L"c:\\windows\\system\\");
}

TEST_CASE_FIXTURE(PageFixture, "a file's checksum comes with its size; a missing one has neither") {
    int32_t size = -1;
    TempFolder::write(folder.file(L"a"), "A");
    CHECK(files::FileChecksum(folder.file(L"a"), size) == 65);
    CHECK(size == 1);
    TempFolder::write(folder.file(L"b"), std::string("\x01\x01"));
    CHECK(files::FileChecksum(folder.file(L"b"), size) == (1 << 30) + 1);
    CHECK(size == 2);
    TempFolder::write(folder.file(L"empty"), "");
    CHECK(files::FileChecksum(folder.file(L"empty"), size) == 0);
    CHECK(size == 0);
    size = -1;
    CHECK(files::FileChecksum(folder.file(L"missing"), size) == 0);
    CHECK(size == 0);
    CHECK(files::FileChecksum(L"", size) == 0);
    size = -1;
    classes.revoke();
    CHECK(files::FileChecksum(folder.file(L"a"), size) == 0);
    CHECK(size == 0);
}

TEST_CASE_FIXTURE(PageFixture, "the properties dialog is asked of the shell with exactly its record") {
    desktop.shellAnswers = {true, false};
    CHECK(files::ShowFileProperties(L"C:\\a b.exe", parent.handle()));
    CHECK_FALSE(files::ShowFileProperties(L"C:\\a b.exe", parent.handle()));
    REQUIRE(desktop.shellRequests.size() == 2);
    const auto& request = desktop.shellRequests[0];
    CHECK(request.mask == 1100);
    CHECK(request.owner == parent.handle());
    CHECK(request.verb == L"properties");
    CHECK(request.file == L"C:\\a b.exe");
    CHECK(request.show == 0);
}

TEST_CASE_FIXTURE(PageFixture, "explorer is started from the Windows folder with the argument as it stands") {
    desktop.programAnswers = {true, false};
    files::startExplorer(L"C:\\a b\\%x%");
    CHECK_THROWS_AS(files::startExplorer(L"C:\\"), win32::Error);
    REQUIRE(desktop.programs.size() == 2);
    CHECK(desktop.programs[0].commandLine == L"explorer C:\\a b\\%x%");
    CHECK(desktop.programs[0].application == win32::windowsFolder() + L"\\explorer.exe");
}
