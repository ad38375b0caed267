// The one choice between Windows' ANSI and wide functions.
//
// On the NT family every text function is called in its wide form. On Windows 95, 98 and Me those exist but
// fail (ERROR_CALL_NOT_IMPLEMENTED), so the ANSI forms are called there and texts pass through the code page.
// Bodies are written once, as generic lambdas over the flavour:
//
//     return withFlavour([&](auto f) { return f.setWindowText(window, f.in(text)); });
//
// A body that needs the flavour's types names them: `[&]<class F>(F f) { typename F::FindData found; ... }`.
#pragma once

#include <string>

#include "win32/base/platform.h"
#include "win32/base/text.h"

namespace win32 {

enum class Flavour { wide, ansi };

// The flavour in force: chosen on first use from the top bit of GetVersion, set by the Windows 9x family.
Flavour flavour();

// For the tests, which run everything in both flavours on one machine.
void forceFlavour(Flavour flavour);

// X(name in this code, name in the Windows API): one row per text function that the program calls.
#define WIN32_TEXT_FUNCTIONS(X)                       \
    X(appendMenu, AppendMenu)                         \
    X(callWindowProc, CallWindowProc)                 \
    X(createDirectory, CreateDirectory)               \
    X(createFile, CreateFile)                         \
    X(createFontIndirect, CreateFontIndirect)         \
    X(createProcess, CreateProcess)                   \
    X(createWindowEx, CreateWindowEx)                 \
    X(defWindowProc, DefWindowProc)                   \
    X(deleteFile, DeleteFile)                         \
    X(dispatchMessage, DispatchMessage)               \
    X(findFirstFile, FindFirstFile)                   \
    X(findNextFile, FindNextFile)                     \
    X(formatMessage, FormatMessage)                   \
    X(getCommandLine, GetCommandLine)                 \
    X(getComputerName, GetComputerName)               \
    X(getDateFormat, GetDateFormat)                   \
    X(getDriveType, GetDriveType)                     \
    X(getEnvironmentVariable, GetEnvironmentVariable) \
    X(getFileAttributes, GetFileAttributes)           \
    X(getFullPathName, GetFullPathName)               \
    X(getLongPathName, GetLongPathName)               \
    X(getMessage, GetMessage)                         \
    X(getModuleFileName, GetModuleFileName)           \
    X(getModuleHandle, GetModuleHandle)               \
    X(getObject, GetObject)                           \
    X(getSystemDirectory, GetSystemDirectory)         \
    X(getTempPath, GetTempPath)                       \
    X(getTimeFormat, GetTimeFormat)                   \
    X(getVersionEx, GetVersionEx)                     \
    X(getVolumeInformation, GetVolumeInformation)     \
    X(getUserName, GetUserName)                       \
    X(getWindowLongPtr, GetWindowLongPtr)             \
    X(getWindowsDirectory, GetWindowsDirectory)       \
    X(getWindowText, GetWindowText)                   \
    X(getWindowTextLength, GetWindowTextLength)       \
    X(isDialogMessage, IsDialogMessage)               \
    X(lcMapString, LCMapString)                       \
    X(loadCursor, LoadCursor)                         \
    X(loadImage, LoadImage)                           \
    X(loadLibrary, LoadLibrary)                       \
    X(loadLibraryEx, LoadLibraryEx)                   \
    X(loadString, LoadString)                         \
    X(messageBox, MessageBox)                         \
    X(moveFile, MoveFile)                             \
    X(peekMessage, PeekMessage)                       \
    X(regCreateKeyEx, RegCreateKeyEx)                 \
    X(regDeleteKey, RegDeleteKey)                     \
    X(regDeleteValue, RegDeleteValue)                 \
    X(regEnumKeyEx, RegEnumKeyEx)                     \
    X(regEnumValue, RegEnumValue)                     \
    X(registerClass, RegisterClass)                   \
    X(regOpenKeyEx, RegOpenKeyEx)                     \
    X(regQueryValueEx, RegQueryValueEx)               \
    X(regSetValueEx, RegSetValueEx)                   \
    X(searchPath, SearchPath)                         \
    X(sendMessage, SendMessage)                       \
    X(setEnvironmentVariable, SetEnvironmentVariable) \
    X(setFileAttributes, SetFileAttributes)           \
    X(setWindowLongPtr, SetWindowLongPtr)             \
    X(setWindowText, SetWindowText)                   \
    X(shellExecute, ShellExecute)                     \
    X(shellExecuteEx, ShellExecuteEx)                 \
    X(systemParametersInfo, SystemParametersInfo)

// One forwarding function per row. A null pointer has to be spelt nullptr.
#define WIN32_FORWARD_WIDE(name, api)          \
    template <class... Arguments>              \
    static auto name(Arguments... arguments) { \
        return ::api##W(arguments...);         \
    }
#define WIN32_FORWARD_ANSI(name, api)          \
    template <class... Arguments>              \
    static auto name(Arguments... arguments) { \
        return ::api##A(arguments...);         \
    }

struct WideFlavour {
    using Char = wchar_t;
    using String = std::wstring;
    using FindData = WIN32_FIND_DATAW;
    using WindowClass = WNDCLASSW;
    using LogicalFont = LOGFONTW;
    using HighContrast = HIGHCONTRASTW;
    using NonClientMetrics = NONCLIENTMETRICSW;
    using OsVersionInfo = OSVERSIONINFOW;
    using StartupInfo = STARTUPINFOW;
    using ShellExecuteInfo = SHELLEXECUTEINFOW;
    using ListViewItem = LVITEMW;
    using ListViewColumn = LVCOLUMNW;
    using TabItem = TCITEMW;
    static constexpr bool isWide = true;
    // The pointer lives as long as the text: a text made on the spot is only for the call it is made in.
    static const wchar_t* in(const std::wstring& text) { return text.c_str(); }
    static const wchar_t* resource(int number) { return MAKEINTRESOURCEW(number); }
    static std::wstring out(const wchar_t* text, size_t length) { return {text, length}; }
    WIN32_TEXT_FUNCTIONS(WIN32_FORWARD_WIDE)
};

// A text on its way into an ANSI call: converts to the pointer that the call takes and lives as long as it.
struct AnsiArgument {
    std::string text;
    operator const char*() const { return text.c_str(); }
    operator char*() { return text.data(); }
};

struct AnsiFlavour {
    using Char = char;
    using String = std::string;
    using FindData = WIN32_FIND_DATAA;
    using WindowClass = WNDCLASSA;
    using LogicalFont = LOGFONTA;
    using HighContrast = HIGHCONTRASTA;
    using NonClientMetrics = NONCLIENTMETRICSA;
    using OsVersionInfo = OSVERSIONINFOA;
    using StartupInfo = STARTUPINFOA;
    using ShellExecuteInfo = SHELLEXECUTEINFOA;
    using ListViewItem = LVITEMA;
    using ListViewColumn = LVCOLUMNA;
    using TabItem = TCITEMA;
    static constexpr bool isWide = false;
    static AnsiArgument in(const std::wstring& text) { return {toAnsi(text)}; }
    static const char* resource(int number) { return MAKEINTRESOURCEA(number); }
    static std::wstring out(const char* text, size_t length) { return fromAnsi({text, length}); }
    WIN32_TEXT_FUNCTIONS(WIN32_FORWARD_ANSI)
};

template <class Body>
auto withFlavour(Body body) {
    return flavour() == Flavour::wide ? body(WideFlavour{}) : body(AnsiFlavour{});
}

// The text in the flavour's own characters, for calls that want to write into it.
template <class F>
typename F::String spelled(const std::wstring& text) {
    if constexpr (F::isWide) {
        return text;
    } else {
        return toAnsi(text);
    }
}

// A buffer for a call that writes text; `text(length)` is what the call wrote, in wide characters.
template <class F>
struct TextBuffer {
    explicit TextBuffer(size_t capacity) : characters(capacity, typename F::Char{}) {}
    typename F::Char* data() { return characters.data(); }
    DWORD capacity() const { return static_cast<DWORD>(characters.size()); }
    std::wstring text(size_t length) const {
        return F::out(characters.data(), length < characters.size() ? length : characters.size());
    }
    typename F::String characters;
};

}  // namespace win32
