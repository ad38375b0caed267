// What the program does with functions that only newer Windows has: that they are looked up by their names,
// what they are asked, and what becomes of each of their answers.
#include "tests/support/looked_up.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <tuple>
#include <vector>

#include "tests/support/program_image.h"
#include "tests/support/raised.h"
#include "tests/support/replaced_import.h"
#include "tests/support/scripted_desktop.h"
#include "tests/support/temp_folder.h"
#include "tests/support/text.h"
#include "win32/base/flavour.h"
#include "win32/files/file_replacement.h"
#include "win32/files/file_version.h"
#include "win32/files/files.h"
#include "win32/files/indirect_string.h"
#include "win32/files/sha256.h"
#include "win32/system/process.h"
#include "win32/system/system.h"
#include "win32/windows/scale.h"
#include "win32/windows/tab_page.h"

#include <wincrypt.h>

namespace {

struct ReplaceFile {
    static constexpr const char* name = "ReplaceFileW";
    using Function = BOOL(WINAPI*)(const wchar_t*, const wchar_t*, const wchar_t*, DWORD, void*, void*);
};
struct MoveFileEx {
    static constexpr const char* name = "MoveFileExW";
    using Function = BOOL(WINAPI*)(const wchar_t*, const wchar_t*, DWORD);
};
struct DpiForWindow {
    static constexpr const char* name = "GetDpiForWindow";
    using Function = UINT(WINAPI*)(HWND);
};
struct DpiForMonitor {
    static constexpr const char* name = "GetDpiForMonitor";
    using Function = HRESULT(WINAPI*)(HMONITOR, int, UINT*, UINT*);
};
struct MonitorOf {
    static constexpr const char* name = "MonitorFromWindow";
    using Function = HMONITOR(WINAPI*)(HWND, DWORD);
};
struct ThemeActive {
    static constexpr const char* name = "IsThemeActive";
    using Function = BOOL(WINAPI*)();
};
struct FinalPath {
    static constexpr const char* name = "GetFinalPathNameByHandleW";
    using Function = DWORD(WINAPI*)(HANDLE, wchar_t*, DWORD, DWORD);
};
struct DefaultFolders {
    static constexpr const char* name = "SetDefaultDllDirectories";
    using Function = BOOL(WINAPI*)(DWORD);
};
struct DllFolder {
    static constexpr const char* name = "SetDllDirectoryW";
    using Function = BOOL(WINAPI*)(const wchar_t*);
};
struct Disable {
    static constexpr const char* name = "Wow64DisableWow64FsRedirection";
    using Function = BOOL(WINAPI*)(void**);
};
struct Revert {
    static constexpr const char* name = "Wow64RevertWow64FsRedirection";
    using Function = BOOL(WINAPI*)(void*);
};
struct UserLanguage {
    static constexpr const char* name = "GetUserDefaultUILanguage";
    using Function = LANGID(WINAPI*)();
};
struct SystemLanguage {
    static constexpr const char* name = "GetSystemDefaultUILanguage";
    using Function = LANGID(WINAPI*)();
};
struct LocaleName {
    static constexpr const char* name = "LCIDToLocaleName";
    using Function = int(WINAPI*)(LCID, wchar_t*, int, DWORD);
};

const LookedUp<ReplaceFile> replaceFile;
const LookedUp<MoveFileEx> moveFileEx;
const LookedUp<DpiForWindow> dpiForWindow;
const LookedUp<DpiForMonitor> dpiForMonitor;
const LookedUp<MonitorOf> monitorOf;
const LookedUp<ThemeActive> themeActive;
const LookedUp<FinalPath> finalPath;
const LookedUp<DefaultFolders> defaultFolders;
const LookedUp<DllFolder> dllFolder;
const LookedUp<Disable> disable;
const LookedUp<Revert> revert;
const LookedUp<UserLanguage> userLanguage;
const LookedUp<SystemLanguage> systemLanguage;
const LookedUp<LocaleName> localeName;

bool isWide() {
    return win32::flavour() == win32::Flavour::wide;
}

// Steps of a replacement that end badly.
DWORD moveFlags = 0;
BOOL WINAPI failHalfway(const wchar_t* path, const wchar_t* replacement, const wchar_t* old, DWORD flags,
                        void* exclude, void* reserved) {
    CHECK(std::wstring(replacement) != old);
    CHECK(flags == 0);
    CHECK(exclude == nullptr);
    CHECK(reserved == nullptr);
    CHECK(::MoveFileW(path, old));
    ::SetLastError(ERROR_UNABLE_TO_MOVE_REPLACEMENT_2);
    return FALSE;
}
BOOL WINAPI findNothing(const wchar_t* path, const wchar_t*, const wchar_t*, DWORD, void*, void*) {
    CHECK(::DeleteFileW(path));
    ::SetLastError(ERROR_FILE_NOT_FOUND);
    return FALSE;
}
BOOL WINAPI refuseReplacing(const wchar_t*, const wchar_t*, const wchar_t*, DWORD, void*, void*) {
    ::SetLastError(ERROR_SHARING_VIOLATION);
    return FALSE;
}
BOOL WINAPI refuseMoving(const wchar_t*, const wchar_t*, DWORD flags) {
    moveFlags = flags;
    ::SetLastError(ERROR_WRITE_PROTECT);
    return FALSE;
}
BOOL WINAPI comeBetween(const wchar_t*, const wchar_t* to, DWORD) {
    TempFolder::write(to, "in between");
    ::SetLastError(ERROR_ALREADY_EXISTS);
    return FALSE;
}

UINT WINAPI noDpi(HWND) {
    return 0;
}
UINT WINAPI largeDpi(HWND) {
    return 144;
}
HMONITOR WINAPI monitor(HWND window, DWORD which) {
    CHECK(window == ::GetDesktopWindow());
    CHECK(which == 2);
    return reinterpret_cast<HMONITOR>(0x77);
}
HRESULT monitorAnswer = S_OK;
HRESULT WINAPI dpiOfMonitor(HMONITOR given, int kind, UINT* x, UINT* y) {
    CHECK(given == reinterpret_cast<HMONITOR>(0x77));
    CHECK(kind == 0);
    *x = 120;
    *y = 130;
    return monitorAnswer;
}

BOOL isThemed = FALSE;
BOOL WINAPI themed() {
    return isThemed;
}
struct Page : win32::TabPage {
    Page() : TabPage(::GetDesktopWindow(), L"aPage") {}
};

std::wstring final;
DWORD finalLength = 0;
DWORD WINAPI toldPath(HANDLE, wchar_t* path, DWORD room, DWORD flags) {
    CHECK(room == 33000);
    CHECK(flags == 0);
    final.copy(path, room);
    return finalLength;
}

DWORD searched = 0;
BOOL acceptsSearch = TRUE;
std::vector<std::wstring> dllFolders;
BOOL WINAPI searchIn(DWORD flags) {
    searched = flags;
    return acceptsSearch;
}
BOOL WINAPI folderFor(const wchar_t* folder) {
    dllFolders.push_back(folder);
    return TRUE;
}

LANGID WINAPI german() {
    return 0x0407;
}
LANGID WINAPI french() {
    return 0x040C;
}
int WINAPI nameOf(LCID language, wchar_t* text, int room, DWORD flags) {
    CHECK(room == 100);
    CHECK(flags == 0);
    const std::wstring name = language == 0x0407 ? L"de-DE" : language == 0x040C ? L"fr-FR" : L"?";
    name.copy(text, room);
    return static_cast<int>(name.size()) + 1;
}
int WINAPI noName(LCID, wchar_t* text, int, DWORD) {
    *text = L'x';
    return 0;
}

// How often the redirection of files was turned off and back.
BOOL isTurnedOff = TRUE;
int timesOff = 0, timesBack = 0;
BOOL WINAPI turnOff(void** before) {
    *before = &timesOff;
    ++timesOff;
    return isTurnedOff;
}
BOOL WINAPI turnBack(void* before) {
    CHECK(before == &timesOff);
    ++timesBack;
    ::SetLastError(ERROR_GEN_FAILURE);
    return FALSE;
}

// What is made and let go of, and the step that fails.
int providers = 0, hashes = 0;
enum class Step { none, acquiring, creating, hashing, telling, cutting } failing = Step::none;
DWORD largest = 0;
decltype(&::CryptAcquireContextA) realAcquire;
decltype(&::CryptReleaseContext) realRelease;
decltype(&::CryptCreateHash) realCreateHash;
decltype(&::CryptDestroyHash) realDestroyHash;
decltype(&::CryptHashData) realHashData;
decltype(&::CryptGetHashParam) realHashParam;

BOOL WINAPI countAcquire(HCRYPTPROV* provider, const char* container, const char* name, DWORD type,
                         DWORD flags) {
    CHECK(container == nullptr);
    CHECK(name == nullptr);
    CHECK(type == 24);
    CHECK(flags == 0xF0000000);
    *provider = 7;
    if (failing == Step::acquiring) return FALSE;
    const BOOL done = realAcquire(provider, container, name, type, flags);
    providers += done;
    return done;
}
BOOL WINAPI countRelease(HCRYPTPROV provider, DWORD flags) {
    --providers;
    CHECK(flags == 0);
    return realRelease(provider, flags);
}
BOOL WINAPI countCreate(HCRYPTPROV provider, ALG_ID algorithm, HCRYPTKEY key, DWORD flags, HCRYPTHASH* hash) {
    CHECK(algorithm == 0x800C);
    CHECK(key == 0);
    CHECK(flags == 0);
    *hash = 7;
    if (failing == Step::creating) return FALSE;
    const BOOL done = realCreateHash(provider, algorithm, key, flags, hash);
    hashes += done;
    return done;
}
BOOL WINAPI countDestroy(HCRYPTHASH hash) {
    --hashes;
    return realDestroyHash(hash);
}
BOOL WINAPI hash(HCRYPTHASH hash, const BYTE* bytes, DWORD count, DWORD flags) {
    CHECK(hash != 0);
    largest = std::max(largest, count);
    CHECK(flags == 0);
    return failing != Step::hashing && realHashData(hash, bytes, count, flags);
}
BOOL WINAPI tell(HCRYPTHASH hash, DWORD what, BYTE* bytes, DWORD* size, DWORD flags) {
    CHECK(what == HP_HASHVAL);
    CHECK(*size == 32);
    CHECK(flags == 0);
    const BOOL done = realHashParam(hash, what, bytes, size, flags);
    if (failing == Step::cutting) *size = 20;
    return done && failing != Step::telling;
}

}  // namespace

TEST_CASE_FIXTURE(TempFolder,
                  "a file that is half replaced gets its old contents back, with the error told") {
    if (!isWide()) return;  // Windows 9x has neither function
    write(file(L"a"), "old");
    const auto replace = [&] { win32::replaceFile(file(L"a"), "new"); };
    {
        const ReplacedLookUp<ReplaceFile> call(&failHalfway);
        CHECK(raises(ERROR_UNABLE_TO_MOVE_REPLACEMENT_2, file(L"a"), replace));
    }
    CHECK(read(file(L"a")) == "old");
    CHECK(count() == 1);
    {
        const ReplacedLookUp<ReplaceFile> call(&refuseReplacing);
        CHECK(raises(ERROR_SHARING_VIOLATION, file(L"a"), replace));
    }
    CHECK(read(file(L"a")) == "old");
    CHECK(count() == 1);
    {
        const ReplacedLookUp<ReplaceFile> call(&findNothing);
        replace();
    }
    CHECK(read(file(L"a")) == "new");
    CHECK(count() == 1);
}

TEST_CASE_FIXTURE(TempFolder,
                  "a new file that cannot be moved in is an error, one that came between is replaced") {
    if (!isWide()) return;
    {
        const ReplacedLookUp<MoveFileEx> call(&refuseMoving);
        CHECK(raises(ERROR_WRITE_PROTECT, file(L"a"), [&] { win32::replaceFile(file(L"a"), "new"); }));
        CHECK(moveFlags == MOVEFILE_REPLACE_EXISTING);
    }
    CHECK(count() == 0);
    {
        const ReplacedLookUp<MoveFileEx> call(&comeBetween);
        win32::replaceFile(file(L"a"), "new");
    }
    CHECK(read(file(L"a")) == "new");
    CHECK(count() == 1);
}

TEST_CASE("a window's resolution is asked of the window, then of its monitor, then of the screen") {
    HWND window = ::GetDesktopWindow();
    win32::dpiOf(nullptr);
    if (!isWide()) {
        CHECK(win32::dpiOf(window) == win32::systemDpi());
        return;
    }
    {
        const ReplacedLookUp<DpiForWindow> call(&largeDpi);
        CHECK(win32::dpiOf(window) == 144);
    }
    const ReplacedLookUp<DpiForWindow> call(&noDpi);
    win32::dpiOf(nullptr);
    const ReplacedLookUp<MonitorOf> ofWindow(&monitor);
    const ReplacedLookUp<DpiForMonitor> ofMonitor(&dpiOfMonitor);
    monitorAnswer = S_OK;
    CHECK(win32::dpiOf(window) == 120);
    monitorAnswer = E_INVALIDARG;
    CHECK(win32::dpiOf(window) == win32::systemDpi());
}

TEST_CASE("a page is of a window's colour where themes are in force, else of a button's") {
    Page page;
    HDC context = ::CreateCompatibleDC(nullptr);
    const auto brush = [&] {
        return ::SendMessageW(page.handle(), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(context), 0);
    };
    brush();
    const ReplacedLookUp<ThemeActive> call(&themed);
    const int themedBody = isWide() ? COLOR_WINDOW : COLOR_BTNFACE;
    const int themedText = isWide() ? COLOR_WINDOWTEXT : COLOR_BTNTEXT;
    for (const auto& [active, body, text] :
         {std::tuple(TRUE, themedBody, themedText), {FALSE, COLOR_BTNFACE, COLOR_BTNTEXT}}) {
        isThemed = active;
        CHECK(brush() == reinterpret_cast<LRESULT>(::GetSysColorBrush(body)));
        CHECK(::GetBkColor(context) == ::GetSysColor(body));
        CHECK(::GetTextColor(context) == ::GetSysColor(text));
    }
    ::DeleteDC(context);
}

TEST_CASE_FIXTURE(TempFolder, "a file that leads to another machine has no checksum") {
    write(file(L"a"), "abc");
    CHECK(win32::sha256OfFile(file(L"a")).size() == 64);
    const ReplacedLookUp<FinalPath> call(&toldPath);
    for (const auto& [path, isElsewhere] : {std::pair(L"\\\\?\\UNC\\server\\share\\a", true),
                                            {L"\\\\?\\C:\\a", false},
                                            {L"\\\\?\\UNCLE\\a", false}}) {
        final = path;
        finalLength = static_cast<DWORD>(final.size());
        CHECK(win32::sha256OfFile(file(L"a")).empty() == (isElsewhere && isWide()));
    }
    final = L"\\\\?\\UNC\\server";
    for (DWORD length : {0, 33000, 33001}) {
        finalLength = length;
        CHECK(win32::sha256OfFile(file(L"a")).size() == 64);
    }
    final += std::wstring(32999 - final.size(), L'x');
    finalLength = 32999;
    CHECK(win32::sha256OfFile(file(L"a")).empty() == isWide());
}

TEST_CASE_FIXTURE(TempFolder, "whatever fails in between, a checksum lets go of what it has made") {
    write(file(L"a"), std::string(70000, 'a'));
    CHECK(win32::sha256OfFile(file(L"a")).size() == 64);
    const ReplacedImport calls[] = {{"CryptAcquireContextA", &countAcquire, realAcquire},
                                    {"CryptReleaseContext", &countRelease, realRelease},
                                    {"CryptCreateHash", &countCreate, realCreateHash},
                                    {"CryptDestroyHash", &countDestroy, realDestroyHash},
                                    {"CryptHashData", &hash, realHashData},
                                    {"CryptGetHashParam", &tell, realHashParam}};
    for (Step step :
         {Step::none, Step::acquiring, Step::creating, Step::hashing, Step::telling, Step::cutting}) {
        failing = step;
        largest = 0;
        CHECK(win32::sha256OfFile(file(L"a")).empty() == (step != Step::none));
        CHECK(providers == 0);
        CHECK(hashes == 0);
        if (step == Step::none) CHECK(largest == 65536);
    }
    failing = Step::none;
}

TEST_CASE("libraries are asked for in the system folder, on older Windows not in the current one") {
    const ReplacedLookUp<DefaultFolders> folders(&searchIn);
    const ReplacedLookUp<DllFolder> folder(&folderFor);
    for (BOOL accepted : {TRUE, FALSE}) {
        acceptsSearch = accepted;
        searched = 0;
        dllFolders.clear();
        win32::useSystemLibrariesOnly();
        CHECK(searched == (isWide() ? 0x0800 : 0));
        CHECK(dllFolders ==
              (accepted || !isWide() ? std::vector<std::wstring>{} : std::vector<std::wstring>{L""}));
    }
}

TEST_CASE_FIXTURE(TempFolder, "strings are looked for in the user's language, the system's, and English") {
    ScriptedDesktop desktop;
    desktop.windowsVersion = 0x0A;
    const std::wstring text = L"@" + file(L"a.dll") + L",-0";
    write(file(L"a.dll"), ProgramImage({}).bytes);
    const std::pair<const wchar_t*, const wchar_t*> files[] = {
        {L"en-US", L"English"}, {L"fr-FR", L"francais"}, {L"de-DE", L"deutsch"}};
    CHECK(win32::displayedText(text) == text);
    const ReplacedLookUp<UserLanguage> user(&german);
    const ReplacedLookUp<SystemLanguage> system(&french);
    const ReplacedLookUp<LocaleName> name(&nameOf);
    for (const auto& [language, shown] : files) {
        REQUIRE(::CreateDirectoryW(file(language).c_str(), nullptr));
        write(file(language) + L"\\a.dll.mui", ProgramImage({{1, 0x0409, blockBytes({shown})}}).bytes);
        CHECK(win32::displayedText(text) == (isWide() ? shown : L"English"));
    }
    const ReplacedLookUp<LocaleName> none(&noName);
    CHECK(win32::displayedText(text) == L"English");
}

TEST_CASE("the redirection of files is put back as it was, and the last error stays") {
    const bool isRedirected = isWide() && win32::isRedirected();
    win32::NoFileRedirection();  // looks both up
    const ReplacedLookUp<Disable> disabling(&turnOff);
    const ReplacedLookUp<Revert> reverting(&turnBack);
    timesOff = timesBack = 0;
    for (const BOOL done : {TRUE, FALSE}) {
        isTurnedOff = done;
        {
            const win32::NoFileRedirection off;
            CHECK(timesBack == (isRedirected && !done ? 1 : 0));
            ::SetLastError(ERROR_ACCESS_DENIED);
        }
        CHECK(::GetLastError() == ERROR_ACCESS_DENIED);
    }
    CHECK(timesOff == (isRedirected ? 2 : 0));
    CHECK(timesBack == (isRedirected ? 1 : 0));
}

TEST_CASE_FIXTURE(TempFolder, "each function is looked up by its name in its library") {
    write(file(L"a"), "x");
    for (int i = 0; i < 2; ++i) win32::replaceFile(file(L"b"), "x");
    win32::sha256OfFile(file(L"a"));
    win32::fileVersion(file(L"a"));
    win32::windowsFolder();
    std::vector<std::string> names;
    const char end = isWide() ? 'W' : 'A';
    for (const char* text : {"GetFileVersionInfoSize", "GetFileVersionInfo", "VerQueryValue"})
        names.push_back(std::string(text) + end);
    std::vector<std::string> newer = {"GetFinalPathNameByHandleW", "ReplaceFileW", "MoveFileExW",
                                      std::string("GetSystemWindowsDirectory") + end};
    if (win32::isRedirected())
        newer.insert(newer.end(), {"Wow64DisableWow64FsRedirection", "Wow64RevertWow64FsRedirection"});
    for (const std::string& name : names) {
        CAPTURE(name);
        CHECK(looked_up::found().count(name) == 1);
    }
    for (const std::string& name : newer) {
        CAPTURE(name);
        CHECK((looked_up::found().count(name) == 1) == isWide());
    }
}
