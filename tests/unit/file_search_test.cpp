// Looking for files, and what Windows tells of them.
#include "win32/files/file_search.h"

#include <doctest/doctest.h>

#include <algorithm>

#include "tests/support/raised.h"
#include "tests/support/replaced_import.h"
#include "tests/support/temp_folder.h"
#include "tests/support/text.h"
#include "win32/base/flavour.h"
#include "win32/base/text.h"
#include "win32/files/files.h"
#include "win32/files/folders.h"
#include "win32/files/local_files.h"
#include "win32/files/roots.h"

namespace {

std::wstring wide(const wchar_t* text) {
    return text ? text : L"(null)";
}
std::wstring wide(const char* text) {
    return text ? win32::fromAnsi(text) : L"(null)";
}

template <class Char>
void give(const char* text, Char* to) {
    do *to++ = static_cast<Char>(*text);
    while (*text++);
}

// A search that finds one large file, and what it or the next step fails with.
DWORD searchFails = 0, nextFails = 0;
HANDLE searching = nullptr, closed = nullptr;

template <class Char, class Data>
HANDLE WINAPI findFirst(const Char*, Data* data) {
    closed = nullptr;
    ::SetLastError(searchFails);
    if (searchFails) return INVALID_HANDLE_VALUE;
    *data = {};
    give("large", data->cFileName);
    data->nFileSizeHigh = 3;
    data->nFileSizeLow = 0x80000005;
    return searching = reinterpret_cast<HANDLE>(0x1234);
}
template <class Data>
BOOL WINAPI findNext(HANDLE, Data*) {
    ::SetLastError(nextFails);
    return FALSE;
}
BOOL WINAPI findClose(HANDLE search) {
    closed = search;
    return TRUE;
}

struct Search {
    ReplacedImport calls[5] = {{"FindFirstFileW", &findFirst<wchar_t, WIN32_FIND_DATAW>},
                               {"FindFirstFileA", &findFirst<char, WIN32_FIND_DATAA>},
                               {"FindNextFileW", &findNext<WIN32_FIND_DATAW>},
                               {"FindNextFileA", &findNext<WIN32_FIND_DATAA>},
                               {"FindClose", &findClose}};
    Search() {
        searchFails = 0;
        nextFails = ERROR_NO_MORE_FILES;
    }
};

// A volume of that label, none when it cannot be told.
std::wstring askedRoot;
DWORD labelRoom = 0;
bool hasLabel = true;

template <class Char>
BOOL WINAPI volumeInformation(const Char* root, Char* label, DWORD room, DWORD* serial, DWORD* longest,
                              DWORD* flags, Char* system, DWORD systemRoom) {
    askedRoot = wide(root);
    labelRoom = room;
    give("a label", label);
    CHECK(serial == nullptr);
    CHECK(longest == nullptr);
    CHECK(flags == nullptr);
    CHECK(system == nullptr);
    CHECK(systemRoom == 0);
    return hasLabel;
}

template <class Char>
UINT WINAPI driveType(const Char* root) {
    askedRoot = wide(root);
    return DRIVE_FIXED;
}

// A path of so many characters, in the room that is told.
DWORD foundLength = 0;
template <class Char>
DWORD WINAPI searchPath(const Char* folder, const Char* name, const Char* extension, DWORD room, Char* path,
                        Char** file) {
    CHECK(wide(folder) == L"(null)");
    CHECK(wide(name) == L"name.exe");
    CHECK(wide(extension) == L"(null)");
    CHECK(room == 2000);
    CHECK(file != nullptr);
    std::fill(path, path + std::min(foundLength, room), Char('x'));
    return foundLength;
}
template <class Char>
DWORD WINAPI getLongPathName(const Char* name, Char* path, DWORD room) {
    CHECK(wide(name) == L"C:\\name.exe");
    CHECK(room == 2000);
    std::fill(path, path + std::min(foundLength, room), Char('x'));
    return foundLength;
}

}  // namespace

TEST_CASE_FIXTURE(TempFolder, "a folder's files and folders come with what Windows tells of them") {
    write(file(L"a.txt"), "12345");
    REQUIRE(::CreateDirectoryW(file(L"b").c_str(), nullptr));
    REQUIRE(::SetFileAttributesW(file(L"a.txt").c_str(), FILE_ATTRIBUTE_HIDDEN));
    WIN32_FILE_ATTRIBUTE_DATA told = {};
    REQUIRE(::GetFileAttributesExW(file(L"a.txt").c_str(), GetFileExInfoStandard, &told));
    for (const std::wstring& folder : {path(), path() + L'\\'}) {
        std::vector<win32::FoundFile> found = win32::filesIn(folder);
        REQUIRE(found.size() == 2);
        if (found[0].isFolder()) std::swap(found[0], found[1]);
        CHECK(found[0].name == L"a.txt");
        CHECK(found[0].size == 5);
        CHECK((found[0].attributes & FILE_ATTRIBUTE_HIDDEN) != 0);
        CHECK(::CompareFileTime(&found[0].lastWrite, &told.ftLastWriteTime) == 0);
        CHECK_FALSE(found[0].isFolder());
        CHECK(found[1].name == L"b");
        CHECK(found[1].isFolder());
    }
    CHECK(win32::filesIn(file(L"b")).empty());
    const std::wstring cut = path() + std::wstring(L"\0x", 2);
    CHECK(raises(ERROR_PATH_NOT_FOUND, file(L"c"), [&] { win32::filesIn(file(L"c")); }));
    CHECK(raises(ERROR_PATH_NOT_FOUND, cut, [&] { win32::filesIn(cut); }));
}

TEST_CASE_FIXTURE(Search, "a folder that cannot be listed to its end is an error, an empty drive is none") {
    std::vector<win32::FoundFile> found = win32::filesIn(L"C:\\x");
    REQUIRE(found.size() == 1);
    CHECK(found[0].name == L"large");
    CHECK(found[0].size == 0x380000005);
    CHECK(closed == searching);
    CHECK(win32::findFile(L"C:\\x")->size == 0x380000005);
    CHECK(closed == searching);
    nextFails = ERROR_NOT_READY;
    CHECK(raises(ERROR_NOT_READY, L"C:\\x", [] { win32::filesIn(L"C:\\x"); }));
    searchFails = ERROR_ACCESS_DENIED;
    CHECK(raises(ERROR_ACCESS_DENIED, L"C:\\x", [] { win32::filesIn(L"C:\\x"); }));
    CHECK_FALSE(win32::findFile(L"C:\\x"));
    searchFails = ERROR_FILE_NOT_FOUND;
    CHECK(win32::filesIn(L"C:\\x").empty());
    CHECK(closed == nullptr);
}

TEST_CASE_FIXTURE(TempFolder, "one file is found by its name, never by a pattern") {
    write(file(L"a.txt"), "12345");
    const auto found = win32::findFile(file(L"A.TXT"));
    REQUIRE(found);
    CHECK(found->name == L"a.txt");
    CHECK(found->size == 5);
    CHECK(win32::findFile(path())->isFolder());
    for (const std::wstring& name :
         {std::wstring(L"b.txt"), std::wstring(L"a.*"), std::wstring(L"?.txt"), std::wstring(L"a.txt\0x", 7)})
        CHECK_FALSE(win32::findFile(file(name)));
    CHECK(win32::isFolder(path()));
    CHECK_FALSE(win32::isFolder(file(L"a.txt")));
    CHECK_FALSE(win32::isFolder(file(L"b")));
}

TEST_CASE_FIXTURE(TempFolder, "a file is removed, and what is none raises what Windows says") {
    write(file(L"a"), "x");
    const std::wstring cut = file(std::wstring(L"a\0x", 3));
    CHECK(raises(ERROR_FILE_NOT_FOUND, cut, [&] { win32::removeFile(cut); }));
    CHECK(count() == 1);
    win32::removeFile(file(L"a"));
    CHECK(count() == 0);
    CHECK(raises(ERROR_FILE_NOT_FOUND, file(L"a"), [&] { win32::removeFile(file(L"a")); }));
}

TEST_CASE_FIXTURE(TempFolder, "a new file is made once") {
    CHECK(win32::createNewFile(file(L"a")));
    CHECK(read(file(L"a")).empty());
    write(file(L"a"), "kept");
    CHECK_FALSE(win32::createNewFile(file(L"a")));
    CHECK_FALSE(win32::createNewFile(path()));
    CHECK(read(file(L"a")) == "kept");
    const std::wstring nowhere = file(L"no\\b"), cut = file(std::wstring(L"c\0x", 3));
    CHECK(raises(ERROR_PATH_NOT_FOUND, nowhere, [&] { win32::createNewFile(nowhere); }));
    CHECK(raises(ERROR_INVALID_NAME, cut, [&] { win32::createNewFile(cut); }));
    CHECK(count() == 1);
}

TEST_CASE("the root of a path with a drive or a share, none of others") {
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"C:\\a\\b", L"C:\\"},
        {L"c:", L"c:\\"},
        {L"c:a", L"c:\\"},
        {L"\\\\server\\share\\a\\b", L"\\\\server\\share\\"},
        {L"\\\\server\\share", L"\\\\server\\share\\"},
        {L"\\\\s\\h\\", L"\\\\s\\h\\"},
        {L"\\\\\\x", L"\\\\\\x\\"},
        {L"\\\\server", L""},
        {L"\\a\\b\\c", L""},
        {L"a\\b\\c", L""},
        {L"ab", L""},
        {L"a", L""},
        {L"", L""},
    };
    for (const auto& [path, root] : rows) CHECK(win32::rootOf(path) == root);
}

TEST_CASE("a path is told from its drive on, up to 1999 characters") {
    CHECK(win32::fullPath(L"C:\\a\\.\\b\\..\\c") == L"C:\\a\\c");
    wchar_t current[MAX_PATH] = L"";
    REQUIRE(::GetCurrentDirectoryW(MAX_PATH, current) > 3);
    CHECK(win32::fullPath(L"x") == std::wstring(current) + L"\\x");
    const std::wstring longest = L"C:\\" + std::wstring(1996, L'a');
    // Wine's ANSI function ends at 260 characters.
    if (win32::flavour() == win32::Flavour::wide) CHECK(win32::fullPath(longest) == longest);
    CHECK(raises(ERROR_FILENAME_EXCED_RANGE, longest + L'a', [&] { win32::fullPath(longest + L'a'); }));
    // Nor does Wine say what is wrong with no path at all.
    ::SetLastError(ERROR_INVALID_NAME);
    CHECK(raisedBy([] { win32::fullPath(L""); }).number == HRESULT_FROM_WIN32(ERROR_INVALID_NAME));
}

TEST_CASE("a volume's label is asked of the root of a path") {
    const ReplacedImport wideCall("GetVolumeInformationW", &volumeInformation<wchar_t>);
    const ReplacedImport ansiCall("GetVolumeInformationA", &volumeInformation<char>);
    hasLabel = true;
    CHECK(win32::volumeLabel(L"C:\\a\\b") == L"a label");
    CHECK(askedRoot == L"C:\\");
    CHECK(labelRoom == MAX_PATH + 1);
    hasLabel = false;
    CHECK(win32::volumeLabel(L"C:\\a\\b").empty());
    hasLabel = true;
    askedRoot = L"not asked";
    CHECK(win32::volumeLabel(L"\\\\server").empty());
    CHECK(askedRoot == L"not asked");
}

TEST_CASE("moments are told in seconds from 1970 on") {
    const std::pair<FILETIME, int64_t> rows[] = {{{0xD53E8000, 0x019DB1DE}, 0},
                                                 {{0xD5D71680, 0x019DB1DE}, 1},
                                                 {{0xD4A5E980, 0x019DB1DE}, -1},
                                                 {{0x63150000, 0x01DC5D5B}, 1764000000},
                                                 {{0xD127A980, 0x24C85A5E}, 253402300799},
                                                 {{0, 0}, -11644473600}};
    for (const auto& [time, seconds] : rows) CHECK(win32::unixTime(time) == seconds);
}

TEST_CASE_FIXTURE(TempFolder,
                  "a folder holds a normal file where one is neither hidden, system nor a folder") {
    const std::wstring folder = path() + L'\\';
    CHECK_FALSE(win32::holdsNormalFile(folder));
    REQUIRE(::CreateDirectoryW(file(L"b").c_str(), nullptr));
    write(file(L"hidden"), "x");
    write(file(L"system"), "x");
    REQUIRE(::SetFileAttributesW(file(L"hidden").c_str(), FILE_ATTRIBUTE_HIDDEN));
    REQUIRE(::SetFileAttributesW(file(L"system").c_str(), FILE_ATTRIBUTE_SYSTEM));
    CHECK_FALSE(win32::holdsNormalFile(folder));
    write(file(L"z"), "x");
    CHECK(win32::holdsNormalFile(folder));
    CHECK_FALSE(win32::holdsNormalFile(folder + L"no\\"));
    CHECK_FALSE(win32::holdsNormalFile(folder + std::wstring(L"*\0", 2)));
}

TEST_CASE("a path is this machine's own when it has a drive and more, by the drive's root") {
    const ReplacedImport wideCall("GetDriveTypeW", &driveType<wchar_t>);
    const ReplacedImport ansiCall("GetDriveTypeA", &driveType<char>);
    CHECK(win32::isLocal(L"D:\\a"));
    CHECK(askedRoot == L"D:\\");
    askedRoot = L"not asked";
    for (const wchar_t* path : {L"", L"D:\\", L"D:a/b", L"DD\\a", L"\\\\s\\a", L"D:/a"})
        CHECK_FALSE(win32::isLocal(path));
    CHECK(askedRoot == L"not asked");
}

TEST_CASE_FIXTURE(TempFolder, "a root that is there has no error, and some errors mean that none answers") {
    CHECK(win32::errorOfRoot(path()) == ERROR_SUCCESS);
    CHECK(win32::errorOfRoot(file(L"no")) == ERROR_FILE_NOT_FOUND);
    for (DWORD error : {ERROR_NOT_READY, ERROR_BAD_NETPATH, ERROR_GRACEFUL_DISCONNECT})
        CHECK(win32::isOutOfReach(error));
    for (DWORD error : {ERROR_SUCCESS, ERROR_ACCESS_DENIED, ERROR_FILE_NOT_FOUND})
        CHECK_FALSE(win32::isOutOfReach(error));
}

TEST_CASE("what is searched for is found up to 1999 characters") {
    const ReplacedImport wideCall("SearchPathW", &searchPath<wchar_t>);
    const ReplacedImport ansiCall("SearchPathA", &searchPath<char>);
    foundLength = 1999;
    CHECK(win32::searchPath(L"name.exe") == std::wstring(1999, L'x'));
    foundLength = 2000;
    CHECK(win32::searchPath(L"name.exe").empty());
    CHECK(win32::searchPath(std::wstring(L"name.exe\0x", 10)).empty());
}

TEST_CASE("a long path has up to 1999 characters, and what is longer counts as failed") {
    const ReplacedImport wideCall("GetLongPathNameW", &getLongPathName<wchar_t>);
    const ReplacedImport ansiCall("GetLongPathNameA", &getLongPathName<char>);
    for (DWORD length : {0, 1, 1999}) {
        foundLength = length;
        CHECK(win32::longPath(L"C:\\name.exe") == std::wstring(length, L'x'));
    }
    for (DWORD length : {2000, 2001, 32767}) {
        foundLength = length;
        CHECK(win32::longPath(L"C:\\name.exe").empty());
    }
}
