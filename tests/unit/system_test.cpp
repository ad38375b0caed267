// What the system says of itself, whatever room its answers take.
#include "win32/system/system.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "tests/support/replaced_import.h"
#include "tests/support/scripted_desktop.h"
#include "tests/support/text.h"
#include "win32/base/flavour.h"
#include "win32/system/date_time.h"
#include "win32/system/environment.h"
#include "win32/system/identity.h"
#include "win32/system/resources.h"

namespace {

// A folder or file of so many characters, asked for in rooms of these sizes.
size_t pathLength = 0;
std::vector<size_t> rooms;
HMODULE askedModule = nullptr;

template <class Char>
DWORD filled(Char* text, DWORD room, bool isCut) {
    rooms.push_back(room);
    if (pathLength < room) {
        std::fill(text, text + pathLength, Char('x'));
        return static_cast<DWORD>(pathLength);
    }
    std::fill(text, text + room, Char('c'));
    return static_cast<DWORD>(isCut ? room : pathLength + 1);
}
template <class Char>
UINT WINAPI systemDirectory(Char* text, UINT room) {
    return filled(text, room, false);
}
template <class Char>
DWORD WINAPI tempPath(DWORD room, Char* text) {
    return filled(text, room, false);
}
template <class Char>
DWORD WINAPI moduleFileName(HMODULE module, Char* text, DWORD room) {
    askedModule = module;
    return filled(text, room, true);
}

template <class Info>
BOOL WINAPI versionOf(Info* info) {
    const DWORD size = sizeof *info;
    CHECK(info->dwOSVersionInfoSize == size);
    info->dwBuildNumber = 0x040A08AE;
    info->szCSDVersion[0] = 'A';
    info->szCSDVersion[1] = 0;
    return TRUE;
}
template <class Info>
BOOL WINAPI noVersion(Info*) {
    return FALSE;
}

// What dates and times are asked for with.
DWORD givenFlags = 0;
std::wstring givenFormat;
int answer = 0;
template <class Char>
int WINAPI dateFormat(LCID locale, DWORD flags, const SYSTEMTIME* moment, const Char* format, Char* text,
                      int room) {
    CHECK(locale == LOCALE_USER_DEFAULT);
    CHECK(moment->wYear == 2026);
    CHECK(room == 128);
    givenFlags = flags;
    givenFormat = format ? std::wstring(format, format + std::char_traits<Char>::length(format)) : L"(null)";
    text[0] = Char('d');
    text[1] = Char();
    return answer;
}
template <class Char>
int WINAPI timeFormat(LCID locale, DWORD flags, const SYSTEMTIME*, const Char* format, Char* text, int room) {
    CHECK(locale == LOCALE_USER_DEFAULT);
    CHECK(flags == 0);
    CHECK(format == nullptr);
    CHECK(room == 128);
    text[0] = Char('t');
    text[1] = Char();
    return answer;
}

// Names that Windows tells, or does not.
BOOL isTold = TRUE;
DWORD toldLength = 0;
template <class Char>
BOOL WINAPI nameOf(Char* text, DWORD* length) {
    CHECK(*length == 300);
    std::fill(text, text + 4, Char('n'));
    *length = toldLength;
    return isTold;
}

std::vector<int> image;
template <class Char>
HANDLE WINAPI loadImage(HINSTANCE instance, const Char* name, UINT type, int width, int height, UINT flags) {
    CHECK(instance == ::GetModuleHandleW(nullptr));
    image = {static_cast<int>(reinterpret_cast<ULONG_PTR>(name)), static_cast<int>(type), width, height,
             static_cast<int>(flags)};
    return nullptr;
}
template <class Char>
int WINAPI loadString(HINSTANCE instance, UINT number, Char* text, int room) {
    CHECK(instance == ::GetModuleHandleW(nullptr));
    CHECK(room == 4096);
    std::fill(text, text + room - 1, Char('s'));
    return number == 7 ? room - 1 : 0;
}

std::wstring pathOf(size_t length) {
    return std::wstring(length, L'x');
}

const SYSTEMTIME moment = {2026, 2, 6, 28, 5, 9, 30, 250};

}  // namespace

TEST_CASE("folders and files are told whole, whatever room they take") {
    const ReplacedImport calls[] = {{"GetSystemDirectoryW", &systemDirectory<wchar_t>},
                                    {"GetSystemDirectoryA", &systemDirectory<char>},
                                    {"GetTempPathW", &tempPath<wchar_t>},
                                    {"GetTempPathA", &tempPath<char>},
                                    {"GetModuleFileNameW", &moduleFileName<wchar_t>},
                                    {"GetModuleFileNameA", &moduleFileName<char>}};
    for (size_t length : {0, 7, 259, 260, 261, 1000, 70000}) {
        CAPTURE(length);
        pathLength = length;
        for (auto* folder : {&win32::systemFolder, &win32::tempFolder}) {
            rooms.clear();
            CHECK(folder() == pathOf(length));
            std::vector<size_t> expected = {260};
            if (length >= 260) expected.push_back(2 * (length + 1));
            CHECK(rooms == expected);
        }
        rooms.clear();
        CHECK(win32::modulePath(reinterpret_cast<HMODULE>(5)) == pathOf(length));
        CHECK(askedModule == reinterpret_cast<HMODULE>(5));
        std::vector<size_t> doubled = {260};
        while (doubled.back() <= length) doubled.push_back(2 * doubled.back());
        CHECK(rooms == doubled);
    }
    CHECK(win32::moduleFolder(nullptr).empty());
    pathLength = size_t{1} << 30;
    CHECK(win32::systemFolder().empty());
    CHECK(rooms.back() == 260);
}

TEST_CASE("a module's folder is its path without the last part") {
    const std::wstring path = win32::modulePath(nullptr), folder = win32::moduleFolder(nullptr);
    CHECK(path.substr(0, folder.size() + 1) == folder + L'\\');
    CHECK(path.find(L'\\', folder.size() + 1) == std::wstring::npos);
    wchar_t windows[MAX_PATH] = L"";
    REQUIRE(::GetWindowsDirectoryW(windows, MAX_PATH) > 0);
    CHECK(win32::windowsFolder() == windows);
    CHECK(win32::systemAddress(L"kernel32.dll", "GetTickCount") != nullptr);
    CHECK(win32::systemAddress(L"kernel32.dll", "NoSuchFunction") == nullptr);
    CHECK(win32::systemAddress(L"quillon_none.dll", "GetTickCount") == nullptr);
    BOOL isEmulated = FALSE;
    REQUIRE(::IsWow64Process(::GetCurrentProcess(), &isEmulated));
    CHECK(win32::isRedirected() == (isEmulated != FALSE && win32::flavour() == win32::Flavour::wide));
}

TEST_CASE("build and service pack are Windows' own, the build without what Windows 98 puts above it") {
    ScriptedDesktop desktop;
    desktop.windowsVersion = ScriptedDesktop::windows98;
    {
        const ReplacedImport wideCall("GetVersionExW", &versionOf<OSVERSIONINFOW>);
        const ReplacedImport ansiCall("GetVersionExA", &versionOf<OSVERSIONINFOA>);
        const win32::OsVersion version = win32::osVersion();
        CHECK(version.build == 2222);
        CHECK(version.version == L"4.10.2222");
        CHECK(version.servicePack == L"A");
        CHECK(version.platform == 1);
    }
    const ReplacedImport wideCall("GetVersionExW", &noVersion<OSVERSIONINFOW>);
    const ReplacedImport ansiCall("GetVersionExA", &noVersion<OSVERSIONINFOA>);
    const win32::OsVersion version = win32::osVersion();
    CHECK(version.version == L"4.10.0");
    CHECK(version.servicePack.empty());
}

TEST_CASE("variables are set, empty or missing, and have names without NUL") {
    const std::wstring name = L"QuillonVariable", cut = name + std::wstring(L"\0x", 2);
    CHECK_FALSE(win32::findEnvironmentVariable(name));
    CHECK(win32::environmentVariable(name).empty());
    for (size_t length : {1, 5, 3000}) {
        win32::setEnvironmentVariable(name, pathOf(length));
        CHECK(win32::findEnvironmentVariable(name) == pathOf(length));
        CHECK(win32::environmentVariable(name) == pathOf(length));
    }
    CHECK_FALSE(win32::findEnvironmentVariable(cut));
    REQUIRE(::SetEnvironmentVariableW(name.c_str(), L""));
    ::SetLastError(ERROR_ENVVAR_NOT_FOUND);
    CHECK(win32::findEnvironmentVariable(name) == L"");
    REQUIRE(::SetEnvironmentVariableW(name.c_str(), nullptr));
    CHECK_FALSE(win32::findEnvironmentVariable(L""));
}

TEST_CASE("dates and times are asked for in the user's form, and are empty where Windows has none") {
    const ReplacedImport calls[] = {{"GetDateFormatW", &dateFormat<wchar_t>},
                                    {"GetDateFormatA", &dateFormat<char>},
                                    {"GetTimeFormatW", &timeFormat<wchar_t>},
                                    {"GetTimeFormatA", &timeFormat<char>}};
    answer = 2;
    CHECK(win32::shortDateLongTime(moment) == L"d t");
    CHECK(givenFlags == DATE_SHORTDATE);
    CHECK(givenFormat == L"(null)");
    CHECK(win32::fileNameDateTime(moment) == L"d 05-09-30");
    CHECK(givenFlags == 0);
    CHECK(givenFormat == L"MMM dd, yyyy");
    for (int none : {0, -1, 1}) {
        answer = none;
        CHECK(win32::shortDateLongTime(moment) == L" ");
    }
}

TEST_CASE("seconds before a moment, across days and months") {
    const auto before = [](DWORD seconds) { return win32::secondsBefore(moment, seconds); };
    CHECK(before(0).wSecond == 30);
    CHECK(before(0).wMilliseconds == 250);
    CHECK(before(1).wSecond == 29);
    SYSTEMTIME told = before(28 * 86400 + 1);
    CHECK(told.wYear == 2026);
    CHECK(told.wMonth == 1);
    CHECK(told.wDay == 31);
    CHECK(told.wHour == 5);
    CHECK(told.wMinute == 9);
    CHECK(told.wSecond == 29);
    CHECK(before(59 * 86400).wYear == 2025);
    CHECK(before(4000000000u).wYear == 1899);
}

TEST_CASE("names that Windows does not tell are empty; the user's is told with its NUL") {
    const ReplacedImport calls[] = {{"GetComputerNameW", &nameOf<wchar_t>},
                                    {"GetComputerNameA", &nameOf<char>},
                                    {"GetUserNameW", &nameOf<wchar_t>},
                                    {"GetUserNameA", &nameOf<char>}};
    isTold = TRUE;
    toldLength = 3;
    CHECK(win32::computerName() == L"nnn");
    CHECK(win32::userName() == L"nn");
    toldLength = 0;
    CHECK(win32::userName().empty());
    isTold = FALSE;
    toldLength = 3;
    CHECK(win32::computerName().empty());
    CHECK(win32::userName().empty());
}

TEST_CASE("strings and pictures are those of the program itself") {
    const ReplacedImport calls[] = {{"LoadImageW", &loadImage<wchar_t>},
                                    {"LoadImageA", &loadImage<char>},
                                    {"LoadStringW", &loadString<wchar_t>},
                                    {"LoadStringA", &loadString<char>}};
    CHECK_FALSE(win32::loadBitmap(77));
    CHECK((image == std::vector<int>{77, IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION}));
    CHECK(win32::loadString(7) == std::wstring(4095, L's'));
    CHECK(win32::loadString(8).empty());
}
