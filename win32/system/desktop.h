// The one seam to the desktop: whatever asks the user, starts a program, tells the time or the Windows
// version goes through here, so that a test can script the answers.
#pragma once

#include <string>

#include "win32/base/platform.h"

namespace win32 {

// What ShellExecuteEx is asked: the fields of its record that the program sets, all others being zero.
struct ShellRequest {
    ULONG mask = 0;
    HWND owner = nullptr;
    std::wstring verb;
    std::wstring file;
    int show = 0;
};

class Desktop {
  public:
    virtual ~Desktop() = default;

    // MessageBox; gives back the id of the button pressed (IDOK, IDCANCEL).
    virtual int messageBox(HWND owner, const std::wstring& text, const std::wstring& title, UINT style) = 0;
    // TrackPopupMenu at a screen position in pixels; gives back the chosen command, 0 for none.
    virtual UINT popUpMenu(HMENU menu, POINT position, HWND owner) = 0;

    // What is started or opened is named exactly: a text that Windows would take for another (isExactName in
    // win32/base/text.h) is refused.
    //
    // CreateProcess in a normal window, not waited for; false when Windows refuses, GetLastError tells why.
    // `application` may be empty: then the command line names the program.
    virtual bool startProgram(const std::wstring& application, const std::wstring& commandLine) = 0;
    // ShellExecute with the verb "open", show command 1; what the shell answers is not told.
    virtual void openFolder(HWND owner, const std::wstring& path) = 0;
    // ShellExecuteEx; false when the shell refuses.
    virtual bool shellExecute(const ShellRequest& request) = 0;

    virtual SYSTEMTIME localTime() = 0;
    // Milliseconds since Windows started; begins again at 0 after 49.7 days.
    virtual DWORD tickCount() = 0;
    // As GetVersion: major in the low byte, minor in the next, the top bit set on Windows 95, 98 and Me.
    virtual DWORD version() = 0;
    virtual POINT cursorPosition() = 0;
};

// The desktop in force: the real one, until a test sets its own.
Desktop& desktop();
// Sets another desktop and gives back the one before; null sets the real one.
Desktop* setDesktop(Desktop* desktop);

inline bool isNtFamily() {
    return (desktop().version() & 0x80000000) == 0;
}
inline unsigned majorVersion() {
    return desktop().version() & 0xFF;
}
inline unsigned minorVersion() {
    return (desktop().version() >> 8) & 0xFF;
}
inline bool isWindowsXp() {
    return isNtFamily() && majorVersion() == 5 && minorVersion() == 1;
}

}  // namespace win32
