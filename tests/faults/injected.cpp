// Lives in the real program while faults_driver has it run: gives it hives, a Windows folder and answers to
// its boxes, lets one of its calls fail, presses its buttons, and writes down what it was told.
//
// QUILLON_TEST_HIVES     below HKEY_CURRENT_USER, with "machine" and "user" in it
// QUILLON_TEST_WINDOWS   the Windows folder
// QUILLON_TEST_RESULT    where to write
// QUILLON_TEST_FAULT     the number of the call that fails, and its error
// QUILLON_TEST_ROUNDS    how often to refresh, and how often to delete an entry; 0 0 presses everything once
#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "app/main_menu.h"
#include "startup/special_places.h"
#include "tests/support/faults.h"
#include "win32/base/handle.h"
#include "win32/base/text.h"

#include <psapi.h>

namespace {

std::optional<Fault> armed;

std::wstring setting(const wchar_t* name) {
    wchar_t text[1000] = L"";
    ::GetEnvironmentVariableW(name, text, 1000);
    return text;
}

// The two numbers of a setting.
std::pair<size_t, size_t> numbers(const wchar_t* name) {
    wchar_t* end = nullptr;
    const size_t first = std::wcstoul(setting(name).c_str(), &end, 10);
    const std::wstring text = setting(name);
    const size_t blank = text.find(L' ');
    return {first, blank == std::wstring::npos ? 0 : std::wcstoul(text.c_str() + blank, nullptr, 10)};
}

void tell(const std::string& line) {
    win32::OwnedFile file(::CreateFileW(setting(L"QUILLON_TEST_RESULT").c_str(), FILE_APPEND_DATA,
                                        FILE_SHARE_READ, nullptr, OPEN_ALWAYS, 0, nullptr));
    DWORD written = 0;
    const std::string text = line + '\n';
    ::WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

std::string inOneLine(std::string text) {
    for (char& c : text) {
        if (c == '\r' || c == '\n') c = ' ';
    }
    return text;
}

int WINAPI messageBoxW(HWND, const wchar_t* text, const wchar_t*, UINT) {
    tell("box " + inOneLine(win32::toUtf8(text)));
    return IDOK;
}
decltype(&::MessageBoxW) realMessageBox = nullptr;

UINT WINAPI windowsFolder(wchar_t* buffer, UINT room) {
    const std::wstring folder = setting(L"QUILLON_TEST_WINDOWS");
    if (folder.size() >= room) return static_cast<UINT>(folder.size() + 1);
    folder.copy(buffer, folder.size());
    buffer[folder.size()] = 0;
    return static_cast<UINT>(folder.size());
}
decltype(&::GetSystemWindowsDirectoryW) realWindowsFolder = nullptr;

// A second later each time it is asked, so that no two backups have one name.
void WINAPI localTime(SYSTEMTIME* time) {
    static WORD seconds = 0;
    ++seconds;
    *time = {2026,
             11,
             5,
             20,
             static_cast<WORD>(10 + seconds / 3600 % 10),
             static_cast<WORD>(seconds / 60 % 60),
             static_cast<WORD>(seconds % 60),
             0};
}
decltype(&::GetLocalTime) realLocalTime = nullptr;

BOOL CALLBACK keepMainWindow(HWND window, LPARAM result) {
    wchar_t name[100] = L"";
    ::GetClassNameW(window, name, 100);
    if (std::wstring(name) == L"QuillonMain") *reinterpret_cast<HWND*>(result) = window;
    return TRUE;
}

HWND mainWindow() {
    HWND found = nullptr;
    ::EnumThreadWindows(::GetCurrentThreadId(), keepMainWindow, reinterpret_cast<LPARAM>(&found));
    return found;
}

void command(UINT number) {
    ::SendMessageW(mainWindow(), WM_COMMAND, number, 0);
}

// Presses the page's button with the row of that text selected, where there is one.
void press(const wchar_t* pageName, const std::wstring& text) {
    HWND page = ::FindWindowExW(mainWindow(), nullptr, nullptr, pageName);
    HWND list = ::GetDlgItem(page, 101), button = ::GetDlgItem(page, 103);
    const int rows = static_cast<int>(::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < rows; ++row) {
        wchar_t found[200] = L"";
        LVITEMW item = {};
        item.pszText = found;
        item.cchTextMax = 200;
        ::SendMessageW(list, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
        if (text != found) continue;
        item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        ::SendMessageW(list, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&item));
        ::SendMessageW(page, WM_COMMAND, MAKEWPARAM(103, BN_CLICKED), reinterpret_cast<LPARAM>(button));
        return;
    }
}

void pressEverything() {
    command(app::mnuRefresh);
    press(L"ucRun1", L"Program 1");
    press(L"ucWinlogon1", L"Program 12");
    // A value, one that is a list of strings, a line of each ini file, and RunOnceEx.
    for (LONG place : {5, 7, 13, 14, 15}) press(L"ucOther1", startup::specialPlace(place).description);
    command(app::mnuBackup);
}

// Wine's own counts of handles and objects are always 0, so they are counted here.
size_t handles() {
    size_t count = 0;
    DWORD flags = 0;
    for (ULONG_PTR handle = 4; handle < 0x8000; handle += 4)
        count += ::GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags) != FALSE;
    return count;
}

// Where Windows does not tell: by how far the table of objects reaches when all its gaps are filled.
size_t gdiObjects() {
    if (const DWORD told = ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS)) return told;
    const size_t many = 2000;
    std::vector<HBRUSH> brushes;
    size_t furthest = 0;
    for (size_t i = 0; i < many; ++i) {
        brushes.push_back(::CreateSolidBrush(static_cast<COLORREF>(i)));
        furthest = std::max<size_t>(furthest, reinterpret_cast<ULONG_PTR>(brushes.back()) & 0xFFFF);
    }
    for (HBRUSH brush : brushes) ::DeleteObject(brush);
    return furthest > many ? furthest - many : 0;
}

BOOL CALLBACK countWindow(HWND, LPARAM count) {
    ++*reinterpret_cast<size_t*>(count);
    return TRUE;
}

BOOL CALLBACK countWithChildren(HWND window, LPARAM count) {
    ::EnumChildWindows(window, countWindow, count);
    return countWindow(window, count);
}

size_t userObjects() {
    if (const DWORD told = ::GetGuiResources(::GetCurrentProcess(), GR_USEROBJECTS)) return told;
    size_t count = 0;
    ::EnumThreadWindows(::GetCurrentThreadId(), countWithChildren, reinterpret_cast<LPARAM>(&count));
    return count;
}

void tellResources() {
    PROCESS_MEMORY_COUNTERS memory = {};
    ::GetProcessMemoryInfo(::GetCurrentProcess(), &memory, sizeof memory);
    tell("resources " + std::to_string(handles()) + ' ' + std::to_string(gdiObjects()) + ' ' +
         std::to_string(userObjects()) + ' ' + std::to_string(memory.PagefileUsage / 1024));
}

void deleteEntry() {
    const wchar_t key[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run",
                  text[] = L"C:\\nowhere\\x.exe";
    HKEY opened = nullptr;
    ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, key, 0, KEY_SET_VALUE, &opened);
    win32::OwnedKey owner(opened);
    ::RegSetValueExW(opened, L"again", 0, REG_SZ, reinterpret_cast<const BYTE*>(text), sizeof text);
    command(app::mnuRefresh);
    press(L"ucRun1", L"again");
}

// The figures are told after every tenth of the rounds.
void goRound(size_t refreshes, size_t deletions) {
    const size_t parts = 10;
    for (size_t part = 0; part <= parts; ++part) {
        for (size_t i = 0; part && i < refreshes / parts; ++i) command(app::mnuRefresh);
        for (size_t i = 0; i < (part ? deletions / parts : 1); ++i) deleteEntry();
        tellResources();
    }
}

decltype(&::GetMessageW) realGetMessage = nullptr;
BOOL WINAPI getMessage(MSG* message, HWND window, UINT first, UINT last) {
    static bool isDone = false;
    if (!std::exchange(isDone, true)) {
        const auto [refreshes, deletions] = numbers(L"QUILLON_TEST_ROUNDS");
        refreshes ? goRound(refreshes, deletions) : pressEverything();
        command(app::mnuExit);
    }
    return realGetMessage(message, window, first, last);
}

void overrideHive(HKEY hive, const wchar_t* name) {
    HKEY key = nullptr;
    ::RegOpenKeyExW(HKEY_CURRENT_USER, (setting(L"QUILLON_TEST_HIVES") + name).c_str(), 0, KEY_ALL_ACCESS,
                    &key);
    ::RegOverridePredefKey(hive, key);
}

// The first call that the program makes.
decltype(&::SetErrorMode) realSetErrorMode = nullptr;
UINT WINAPI atStart(UINT mode) {
    static bool isPrepared = false;
    if (!std::exchange(isPrepared, true)) {
        overrideHive(HKEY_LOCAL_MACHINE, L"\\machine");
        overrideHive(HKEY_CURRENT_USER, L"\\user");
        for (const wchar_t* library : {L"Helmkit.dll", L"QLNCustom.dll"})
            makeFailing(::LoadLibraryW(library));
        const auto [number, error] = numbers(L"QUILLON_TEST_FAULT");
        armed.emplace(number, static_cast<DWORD>(error));
    }
    return realSetErrorMode(mode);
}

template <class Function>
void replaced(const char* name, Function instead, Function& real) {
    standIn(name, reinterpret_cast<void*>(instead), reinterpret_cast<void**>(&real));
}

void takePlaces() {
    replaced("MessageBoxW", &messageBoxW, realMessageBox);
    replaced("GetSystemWindowsDirectoryW", &windowsFolder, realWindowsFolder);
    replaced("GetLocalTime", &localTime, realLocalTime);
    replaced("GetMessageW", &getMessage, realGetMessage);
    replaced("SetErrorMode", &atStart, realSetErrorMode);
    makeFailing(::GetModuleHandleW(nullptr));
}

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) takePlaces();
    if (reason == DLL_PROCESS_DETACH) {
        tell("calls " + std::to_string(Fault::calls()));
        if (Fault::failed()) tell(std::string("failed ") + Fault::failed());
    }
    return TRUE;
}
