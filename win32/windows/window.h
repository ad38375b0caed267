// Windows: texts, fonts, controls, and windows whose messages come to an object.
#pragma once

#include <functional>
#include <string>

#include "win32/base/error.h"
#include "win32/base/handle.h"
#include "win32/base/platform.h"

namespace win32 {

std::wstring windowText(HWND window);
// On Windows 9x no more than the first 30000 characters, each up to two bytes there.
void setText(HWND window, const std::wstring& text);
LRESULT send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

// The top-level window that holds a control.
HWND topLevelOf(HWND window);

// The font of message boxes (SystemParametersInfo), at a resolution.
OwnedFont messageFont(int dpi);
OwnedFont boldVersionOf(HFONT font);
OwnedFont underlinedVersionOf(HFONT font);
// True when the user has asked for a high-contrast display (SystemParametersInfo).
bool isHighContrast();
// Sends a message to a window and to everything in it.
void sendToAll(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
// Gives a font to a window and everything in it.
void setFont(HWND window, HFONT font);

// Has a window and everything in it painted anew, once, when there is nothing else to do.
void redrawAll(HWND window);

// A child control of a system class, created at no size.
HWND createControl(HWND parent, const wchar_t* systemClass, const std::wstring& text, DWORD style,
                   DWORD extendedStyle, int id);

// A window of our own. Messages come to onMessage; nothing escapes it: an error is handed to the sink below.
class Window {
  public:
    Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    // Destroys the window if it still stands.
    virtual ~Window();

    HWND handle() const { return handle_; }

  protected:
    // The class is registered on first use. A child window (WS_CHILD) needs a parent.
    void create(const wchar_t* className, const std::wstring& title, DWORD style, DWORD extendedStyle,
                HWND parent, HMENU menuOrId);
    virtual LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam);

  private:
    static LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND handle_ = nullptr;
};

// Where errors go that reach the border of a window procedure. Without a sink, and when the sink itself
// throws, they are dropped.
void setWindowErrorSink(std::function<void(const Error& error)> sink);
// Hands the exception being handled to the sink.
void reportCurrentError() noexcept;

// The pointing hand; the arrow where there is none (Windows 95, NT 4).
HCURSOR handCursor();

// The hour-glass, for the lifetime of the object.
class WaitCursor {
  public:
    WaitCursor();
    ~WaitCursor();

  private:
    HCURSOR before_;
};

}  // namespace win32
