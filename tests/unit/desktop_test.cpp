// What the real desktop asks of Windows, field by field.
#include <doctest/doctest.h>

#include <vector>

#include "files/file_properties.h"
#include "tests/support/replaced_import.h"
#include "tests/support/text.h"
#include "win32/base/text.h"
#include "win32/system/desktop.h"

namespace {

std::wstring wide(const wchar_t* text) {
    return text ? text : L"(null)";
}
std::wstring wide(const char* text) {
    return text ? win32::fromAnsi(text) : L"(null)";
}

// What the last call was given, its texts copied.
struct {
    HWND owner;
    std::wstring first, second, third, fourth;
    UINT number;
} given;
SHELLEXECUTEINFOW shellRecord;  // both flavours have this layout
STARTUPINFOW startupRecord;     // so they have, but for the pointers to text
DWORD creationFlags;
HANDLE handed[2];
BOOL answer;

HANDLE newEvent() {
    return ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
}

bool isOpen(HANDLE handle) {
    DWORD flags = 0;
    return ::GetHandleInformation(handle, &flags);
}

template <class Record>
BOOL WINAPI shellExecuteEx(Record* record) {
    static_assert(sizeof(Record) == sizeof shellRecord);
    std::memcpy(&shellRecord, record, sizeof shellRecord);
    given = {record->hwnd, wide(record->lpVerb), wide(record->lpFile), {}, {}, 0};
    record->hProcess = handed[0] = newEvent();
    return answer;
}

template <class Char>
HINSTANCE WINAPI shellExecute(HWND owner, const Char* verb, const Char* file, const Char* parameters,
                              const Char* folder, INT show) {
    given = {owner, wide(verb), wide(file), wide(parameters), wide(folder), static_cast<UINT>(show)};
    return nullptr;
}

template <class Char, class Startup>
BOOL WINAPI createProcess(const Char* application, Char* line, SECURITY_ATTRIBUTES*, SECURITY_ATTRIBUTES*,
                          BOOL inherits, DWORD flags, void* environment, const Char* folder, Startup* startup,
                          PROCESS_INFORMATION* process) {
    static_assert(sizeof(Startup) == sizeof startupRecord);
    given = {nullptr,      wide(application),          wide(line),
             wide(folder), environment ? L"own" : L"", static_cast<UINT>(inherits)};
    line[0] = Char('~');  // as Windows may
    creationFlags = flags;
    std::memcpy(&startupRecord, startup, sizeof startupRecord);
    process->hProcess = handed[0] = newEvent();
    process->hThread = handed[1] = newEvent();
    ::SetLastError(ERROR_BAD_EXE_FORMAT);
    return answer;
}

template <class Char>
int WINAPI messageBox(HWND owner, const Char* text, const Char* title, UINT style) {
    given = {owner, wide(text), wide(title), {}, {}, style};
    return IDCANCEL;
}

POINT menuPlace;
std::vector<UINT_PTR> menuGiven;
BOOL WINAPI trackMenu(HMENU menu, UINT flags, int x, int y, int reserved, HWND owner, const RECT* place) {
    menuPlace = {x, y};
    menuGiven = {reinterpret_cast<UINT_PTR>(menu), flags, UINT_PTR(reserved),
                 reinterpret_cast<UINT_PTR>(owner), reinterpret_cast<UINT_PTR>(place)};
    return 42;
}

HWND owner() {
    return ::GetDesktopWindow();
}

}  // namespace

TEST_CASE("the shell gets a record with owner, verb, file and flags, and nothing else in it") {
    const ReplacedImport wideCall("ShellExecuteExW", shellExecuteEx<SHELLEXECUTEINFOW>);
    const ReplacedImport ansiCall("ShellExecuteExA", shellExecuteEx<SHELLEXECUTEINFOA>);
    for (BOOL accepted : {TRUE, FALSE}) {
        answer = accepted;
        CHECK(files::ShowFileProperties(L"C:\\a b.exe", owner()) == (accepted == TRUE));
        CHECK(shellRecord.cbSize == (sizeof(void*) == 4 ? 60 : 112));
        CHECK(shellRecord.fMask == 0x44C);
        CHECK(shellRecord.hwnd == owner());
        CHECK(given.first == L"properties");
        CHECK(given.second == L"C:\\a b.exe");
        CHECK(shellRecord.lpParameters == nullptr);
        CHECK(shellRecord.lpDirectory == nullptr);
        CHECK(shellRecord.nShow == 0);
        CHECK(shellRecord.hInstApp == nullptr);
        CHECK(shellRecord.lpIDList == nullptr);
        CHECK(shellRecord.lpClass == nullptr);
        CHECK(shellRecord.hkeyClass == nullptr);
        CHECK(shellRecord.dwHotKey == 0);
        CHECK(shellRecord.hIcon == nullptr);
        CHECK(shellRecord.hProcess == nullptr);
        CHECK_FALSE(isOpen(handed[0]));
    }
    win32::desktop().shellExecute({SEE_MASK_NOCLOSEPROCESS, owner(), L"open", L"C:\\a.exe", SW_SHOW});
    CHECK(shellRecord.nShow == SW_SHOW);
    given.second = L"not asked";
    CHECK_FALSE(files::ShowFileProperties(std::wstring(L"C:\\a\0b", 6), owner()));
    CHECK(given.second == L"not asked");
}

TEST_CASE("a folder is opened by the shell with the verb open, in a normal window") {
    const ReplacedImport wideCall("ShellExecuteW", shellExecute<wchar_t>);
    const ReplacedImport ansiCall("ShellExecuteA", shellExecute<char>);
    win32::desktop().openFolder(owner(), L"C:\\Quillon\\Backup\\");
    CHECK(given.owner == owner());
    CHECK(given.first == L"open");
    CHECK(given.second == L"C:\\Quillon\\Backup\\");
    CHECK(given.third == L"(null)");
    CHECK(given.fourth == L"(null)");
    CHECK(given.number == 1);
    win32::desktop().openFolder(owner(), std::wstring(L"C:\\x\0y", 6));
    CHECK(given.second == L"C:\\Quillon\\Backup\\");
}

TEST_CASE("a program is started in a normal window, inherits nothing and leaves no handle open") {
    const ReplacedImport wideCall("CreateProcessW", createProcess<wchar_t, STARTUPINFOW>);
    const ReplacedImport ansiCall("CreateProcessA", createProcess<char, STARTUPINFOA>);
    const std::wstring line = L"explorer http://mardelix.example/";
    for (const std::wstring& application : {std::wstring(L"C:\\windows\\explorer.exe"), std::wstring()}) {
        for (BOOL started : {TRUE, FALSE}) {
            answer = started;
            CHECK(win32::desktop().startProgram(application, line) == (started == TRUE));
            if (!started) CHECK(::GetLastError() == ERROR_BAD_EXE_FORMAT);
            CHECK(given.first == (application.empty() ? L"(null)" : application));
            CHECK(given.second == line);
            CHECK(given.third == L"(null)");
            CHECK(given.fourth.empty());
            CHECK(given.number == FALSE);
            CHECK(creationFlags == CREATE_DEFAULT_ERROR_MODE);
            CHECK(startupRecord.cb == (sizeof(void*) == 4 ? 68 : 104));
            CHECK(startupRecord.dwFlags == STARTF_USESHOWWINDOW);
            CHECK(startupRecord.wShowWindow == SW_SHOWNORMAL);
            for (HANDLE handle : handed) CHECK_FALSE(isOpen(handle));
        }
    }
    given.second = L"not asked";
    ::SetLastError(ERROR_SUCCESS);
    CHECK_FALSE(win32::desktop().startProgram(std::wstring(L"a\0b", 3), line));
    CHECK(::GetLastError() == ERROR_INVALID_NAME);
    CHECK_FALSE(win32::desktop().startProgram(L"a", std::wstring(L"a\0b", 3)));
    CHECK(given.second == L"not asked");
}

TEST_CASE("a message box has its owner, text, title and style, and gives back the button") {
    const ReplacedImport wideCall("MessageBoxW", messageBox<wchar_t>);
    const ReplacedImport ansiCall("MessageBoxA", messageBox<char>);
    CHECK(win32::desktop().messageBox(owner(), L"text", L"title", 49) == IDCANCEL);
    CHECK(given.owner == owner());
    CHECK(given.first == L"text");
    CHECK(given.second == L"title");
    CHECK(given.number == 49);
}

TEST_CASE("a pop-up menu stands where it is asked to, and gives back the command") {
    const ReplacedImport call("TrackPopupMenu", &trackMenu);
    const auto menu = reinterpret_cast<HMENU>(0x1234);
    CHECK(win32::desktop().popUpMenu(menu, {30, 40}, owner()) == 42);
    CHECK(menuPlace.x == 30);
    CHECK(menuPlace.y == 40);
    CHECK((menuGiven == std::vector<UINT_PTR>{0x1234, TPM_RETURNCMD | TPM_RIGHTBUTTON, 0,
                                              reinterpret_cast<UINT_PTR>(owner()), 0}));
}

TEST_CASE("time, version and cursor are those of Windows") {
    SYSTEMTIME before, after;
    ::GetLocalTime(&before);
    const SYSTEMTIME told = win32::desktop().localTime();
    ::GetLocalTime(&after);
    FILETIME first, middle, last;
    REQUIRE(::SystemTimeToFileTime(&before, &first));
    REQUIRE(::SystemTimeToFileTime(&told, &middle));
    REQUIRE(::SystemTimeToFileTime(&after, &last));
    CHECK(::CompareFileTime(&first, &middle) <= 0);
    CHECK(::CompareFileTime(&middle, &last) <= 0);
    const DWORD ticks = ::GetTickCount();
    CHECK(win32::desktop().tickCount() - ticks < 10000);
    CHECK(win32::desktop().version() == ::GetVersion());
    REQUIRE(::SetCursorPos(37, 41));
    const POINT cursor = win32::desktop().cursorPosition();
    CHECK(cursor.x == 37);
    CHECK(cursor.y == 41);
}
