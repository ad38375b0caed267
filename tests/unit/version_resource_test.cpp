// What is made of version.dll's own answers: the sizes that it tells, and where it points.
#include "win32/files/version_resource.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/looked_up.h"
#include "tests/support/temp_folder.h"
#include "tests/support/text.h"
#include "win32/base/flavour.h"
#include "win32/files/file_version.h"

namespace {

template <class Char>
struct InfoSize {
    static constexpr const char* name =
        sizeof(Char) == 1 ? "GetFileVersionInfoSizeA" : "GetFileVersionInfoSizeW";
    using Function = DWORD(WINAPI*)(const Char*, DWORD*);
};
template <class Char>
struct Info {
    static constexpr const char* name = sizeof(Char) == 1 ? "GetFileVersionInfoA" : "GetFileVersionInfoW";
    using Function = BOOL(WINAPI*)(const Char*, DWORD, DWORD, void*);
};
template <class Char>
struct Query {
    static constexpr const char* name = sizeof(Char) == 1 ? "VerQueryValueA" : "VerQueryValueW";
    using Function = BOOL(WINAPI*)(const void*, const Char*, void**, UINT*);
};

const LookedUp<InfoSize<char>> infoSizeA;
const LookedUp<InfoSize<wchar_t>> infoSizeW;
const LookedUp<Info<char>> infoA;
const LookedUp<Info<wchar_t>> infoW;
const LookedUp<Query<char>> queryA;
const LookedUp<Query<wchar_t>> queryW;

// The size that is told with its handle, and what reading answers.
DWORD size = 0, readError = 0;
// What was asked: the file, and each reading's handle and room.
std::wstring asked;
std::vector<std::pair<DWORD, DWORD>> readings;

template <class Char>
DWORD WINAPI tellSize(const Char* file, DWORD* handle) {
    asked.assign(file, file + std::char_traits<Char>::length(file));
    *handle = 77;
    return size;
}
template <class Char>
BOOL WINAPI readInfo(const Char*, DWORD handle, DWORD room, void*) {
    readings.emplace_back(handle, room);
    ::SetLastError(readError);
    return readError == 0;
}

// Where an answer lies, from the block's start or from the end of its room, and the length that is told.
ptrdiff_t place = 0;
size_t room = 0;
UINT length = 0;
bool isFromEnd = false, isFound = true;

template <class Char>
BOOL WINAPI pointAt(const void* block, const Char* path, void** found, UINT* told) {
    if (path[1] == Char('V')) return FALSE;  // \VarFileInfo\Translation: no languages are told
    auto* start = static_cast<char*>(const_cast<void*>(block));
    char* const answer = start + (isFromEnd ? room : 0) + place;
    if (isFromEnd && place < 0)
        std::fill_n(reinterpret_cast<Char*>(answer), -place / sizeof(Char), Char('x'));
    *found = isFound ? answer : nullptr;
    *told = length;
    return TRUE;
}

template <class Char>
struct Answers {
    ReplacedLookUp<InfoSize<Char>> size{&tellSize<Char>};
    ReplacedLookUp<Info<Char>> info{&readInfo<Char>};
    ReplacedLookUp<Query<Char>> query{&pointAt<Char>};
};

struct Scripted : TempFolder {
    Answers<char> ansi;
    Answers<wchar_t> wide;
    const bool isWide = win32::flavour() == win32::Flavour::wide;
    const DWORD usual = 3 << 16;

    Scripted() {
        write(file(L"a.exe"), "x");
        size = 1000;
        readError = 0;
        isFound = true;
        readings.clear();
    }
    bool isRead() {
        readings.clear();
        return static_cast<bool>(win32::readVersionBlock(file(L"a.exe"), room));
    }
    std::optional<std::wstring> stringAt(ptrdiff_t where, UINT told, bool fromEnd) {
        place = where;
        length = told;
        isFromEnd = fromEnd;
        return win32::VersionResource(file(L"a.exe")).string(L"CompanyName");
    }
};

using Readings = std::vector<std::pair<DWORD, DWORD>>;

}  // namespace

TEST_CASE_FIXTURE(Scripted, "a block is read at once where that needs no size, else by the size told") {
    CHECK(isRead());
    CHECK(readings == (isWide ? Readings{{0, usual}} : Readings{{77, 1000}}));
    CHECK(room == (isWide ? usual : 1000) + (3 << 16));
    readError = ERROR_NOT_ENOUGH_MEMORY;
    CHECK_FALSE(isRead());
    CHECK(readings == (isWide ? Readings{{0, usual}, {77, 1000}} : Readings{{77, 1000}}));
}

TEST_CASE_FIXTURE(Scripted, "a file that was looked through and has none is not looked through again") {
    for (DWORD error = ERROR_RESOURCE_DATA_NOT_FOUND - 1; error <= ERROR_RESOURCE_LANG_NOT_FOUND + 1;
         ++error) {
        CAPTURE(error);
        readError = error;
        const bool isNone = error >= ERROR_RESOURCE_DATA_NOT_FOUND && error <= ERROR_RESOURCE_LANG_NOT_FOUND;
        CHECK_FALSE(isRead());
        CHECK(readings.size() == (isWide && !isNone ? 2 : 1));
    }
}

TEST_CASE_FIXTURE(Scripted, "a size is believed up to a megabyte") {
    readError = ERROR_NOT_ENOUGH_MEMORY;
    for (DWORD told : {0ul, 1ul, 1ul << 20, (1ul << 20) + 1, ~0ul}) {
        CAPTURE(told);
        size = told;
        CHECK_FALSE(isRead());
        const bool isBelieved = told > 0 && told <= 1 << 20;
        CHECK(readings.size() == (isWide ? 1 : 0) + (isBelieved ? 1 : 0));
    }
}

TEST_CASE_FIXTURE(Scripted, "a name without an extension is asked for as it stands") {
    readError = ERROR_NOT_ENOUGH_MEMORY;
    for (const wchar_t* name : {L"a.exe", L"b", L"c.d"}) {
        write(file(name), "x");
        win32::readVersionBlock(file(name), room);
        CHECK(asked == file(name) + (std::wstring(name) == L"b" ? L"." : L""));
    }
}

TEST_CASE_FIXTURE(Scripted, "an answer outside the block is none, and one at its end is cut") {
    REQUIRE(isRead());
    const int character = isWide ? 2 : 1;
    CHECK_FALSE(stringAt(-character, 2, false));
    CHECK(stringAt(0, 2, false) == L"");
    CHECK(stringAt(0, 2, true) == L"");
    CHECK_FALSE(stringAt(character, 2, true));
    CHECK(stringAt(-2 * character, 100000, true) == L"xx");
    isFound = false;
    CHECK_FALSE(stringAt(0, 2, false));
    CHECK(win32::fileVersion(file(L"a.exe")).empty());
}
