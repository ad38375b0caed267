// Windows: which there are, what they say, and pressing their buttons.
#include "tests/e2e/probe/commands.h"
#include "tests/e2e/probe/json.h"

#include <commctrl.h>

namespace probe {
namespace {

LRESULT ask(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    DWORD_PTR result = 0;
    if (!::SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, kPatience, &result))
        throw Failure{"the window does not answer", ::GetLastError()};
    return static_cast<LRESULT>(result);
}

void post(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    if (!::PostMessageW(window, message, wParam, lParam)) throw Failure{"PostMessage", ::GetLastError()};
}

// GetWindowText does not reach the controls of another program; the message does.
std::wstring textOf(HWND window) {
    std::wstring text(32768, L'\0');
    text.resize(ask(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data())));
    return text;
}

std::wstring classOf(HWND window) {
    wchar_t name[256];
    return {name, static_cast<size_t>(::GetClassNameW(window, name, ARRAYSIZE(name)))};
}

std::string described(HWND window) {
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    RECT place{};
    ::GetWindowRect(window, &place);
    return object({member("window", static_cast<long long>(reinterpret_cast<ULONG_PTR>(window))),
                   member("class", quoted(classOf(window))), member("text", quoted(textOf(window))),
                   member("id", ::GetDlgCtrlID(window)),
                   member("parent", static_cast<long long>(reinterpret_cast<ULONG_PTR>(::GetParent(window)))),
                   member("pid", process), flag("visible", ::IsWindowVisible(window)),
                   flag("enabled", ::IsWindowEnabled(window)),
                   member("rectangle", array({std::to_string(place.left), std::to_string(place.top),
                                              std::to_string(place.right), std::to_string(place.bottom)}))});
}

// A window can go while the others are asked; it is then left out.
void describeInto(HWND window, std::vector<std::string>& list) {
    try {
        list.push_back(described(window));
    } catch (const Failure&) {
        if (::IsWindow(window)) throw;
    }
}

struct Collected {
    DWORD process;
    std::vector<HWND> windows;
};

BOOL CALLBACK collect(HWND window, LPARAM parameter) {
    auto* collected = reinterpret_cast<Collected*>(parameter);
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    if (process == collected->process) collected->windows.push_back(window);
    return TRUE;
}

std::string describedAll(const std::vector<HWND>& windows) {
    std::vector<std::string> list;
    for (HWND window : windows) describeInto(window, list);
    return object({member("windows", array(list))});
}

// windows <pid>: the visible top-level windows of a program
std::string topLevel(const Fields& fields) {
    Collected collected{static_cast<DWORD>(numberField(fields, 0)), {}};
    ::EnumWindows(collect, reinterpret_cast<LPARAM>(&collected));
    std::erase_if(collected.windows, [](HWND window) { return !::IsWindowVisible(window); });
    return describedAll(collected.windows);
}

// children <window>: all windows below it
std::string children(const Fields& fields) {
    HWND window = windowField(fields, 0);
    Collected collected{0, {}};
    ::GetWindowThreadProcessId(window, &collected.process);
    ::EnumChildWindows(window, collect, reinterpret_cast<LPARAM>(&collected));
    return describedAll(collected.windows);
}

// press <button>: posted, since what the button does may open a message box and not come back for long
std::string press(const Fields& fields) {
    HWND button = windowField(fields, 0);
    HWND parent = ::GetParent(button);
    post(parent, WM_COMMAND, MAKEWPARAM(::GetDlgCtrlID(button), BN_CLICKED),
         reinterpret_cast<LPARAM>(button));
    return done();
}

// message <window> <message> <wParam> <lParam>: posted
std::string message(const Fields& fields) {
    post(windowField(fields, 0), numberField(fields, 1), numberField(fields, 2), numberField(fields, 3));
    return done();
}

// selectedtab <tab strip>
std::string selectedTab(const Fields& fields) {
    return object({member("index", ask(windowField(fields, 0), TCM_GETCURSEL))});
}

// textheight <width> <text>: how high a text is that is wrapped in this width, in the font of messages. The
// controls' own font cannot be used by another program.
std::string textHeight(const Fields& fields) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (!::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) {
        // Older families do not know the member that Windows Vista appended.
        metrics.cbSize = offsetof(NONCLIENTMETRICSW, lfMessageFont) + sizeof metrics.lfMessageFont;
        ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
    }
    HDC screen = ::GetDC(nullptr);
    HFONT font = ::CreateFontIndirectW(&metrics.lfMessageFont);
    HGDIOBJ before = ::SelectObject(screen, font);
    RECT room{0, 0, numberField(fields, 0), 0};
    ::DrawTextW(screen, field(fields, 1).c_str(), -1, &room,
                DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS);
    ::SelectObject(screen, before);
    ::DeleteObject(font);
    ::ReleaseDC(nullptr, screen);
    return object({member("width", room.right), member("height", room.bottom)});
}

}  // namespace

void addWindowCommands(Commands& commands) {
    commands.insert({{L"windows", topLevel},
                     {L"children", children},
                     {L"press", press},
                     {L"message", message},
                     {L"textheight", textHeight},
                     {L"selectedtab", selectedTab}});
}

}  // namespace probe
