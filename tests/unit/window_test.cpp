// Windows: what they are made with, and what becomes of their messages, fonts and texts.
#include "win32/windows/window.h"

#include <doctest/doctest.h>

#include <cstring>
#include <type_traits>
#include <vector>

#include "tests/support/raised.h"
#include "tests/support/replaced_import.h"
#include "tests/support/text.h"
#include "win32/base/flavour.h"
#include "win32/base/text.h"
#include "win32/windows/scale.h"

namespace {

// A window that notes its messages.
class Probe : public win32::Window {
  public:
    explicit Probe(HWND parent = nullptr, UINT_PTR menu = 0) {
        create(L"QuillonProbe", L"a title", parent ? WS_CHILD : WS_POPUP, WS_EX_CONTROLPARENT, parent,
               reinterpret_cast<HMENU>(menu));
    }
    std::vector<std::pair<WPARAM, LPARAM>> asked;
    bool fails = false;

  protected:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message != WM_APP && message != WM_SETFONT) return Window::onMessage(message, wParam, lParam);
        asked.emplace_back(wParam, lParam);
        if (fails) win32::raise(E_ABORT, L"failed");
        return 77;
    }
};

// A child of nobody, which Windows refuses.
struct Orphan : win32::Window {
    Orphan() { create(L"QuillonProbe", {}, WS_CHILD, 0, nullptr, nullptr); }
};

std::wstring wide(const wchar_t* text) {
    return text ? text : L"(null)";
}
std::wstring wide(const char* text) {
    return text ? win32::fromAnsi(text) : L"(null)";
}

// What the last window was made with.
struct {
    DWORD extendedStyle, style;
    std::wstring className, text;
    std::vector<int> place;
    HWND parent;
    HMENU menu;
    HINSTANCE instance;
    void* parameter;
} made;
WNDCLASSW registered;  // both flavours have this layout, but for the pointers to text
std::vector<int> image;
int imageNumber = 0;

template <class Char>
struct Real {
    using Class = std::conditional_t<sizeof(Char) == 1, WNDCLASSA, WNDCLASSW>;
    static inline HWND(WINAPI* createWindow)(DWORD, const Char*, const Char*, DWORD, int, int, int, int, HWND,
                                             HMENU, HINSTANCE, void*);
    static inline ATOM(WINAPI* registerClass)(const Class*);
    static inline HANDLE(WINAPI* loadImage)(HINSTANCE, const Char*, UINT, int, int, UINT);
    static inline HCURSOR(WINAPI* loadCursor)(HINSTANCE, const Char*);
};

template <class Char>
HWND WINAPI createWindow(DWORD extendedStyle, const Char* name, const Char* text, DWORD style, int x, int y,
                         int width, int height, HWND parent, HMENU menu, HINSTANCE instance,
                         void* parameter) {
    made = {extendedStyle, style, wide(name), wide(text), {x, y, width, height},
            parent,        menu,  instance,   parameter};
    return Real<Char>::createWindow(extendedStyle, name, text, style, x, y, width, height, parent, menu,
                                    instance, parameter);
}
template <class Char>
ATOM WINAPI registerClass(const typename Real<Char>::Class* given) {
    static_assert(sizeof *given == sizeof registered);
    std::memcpy(&registered, given, sizeof registered);
    return Real<Char>::registerClass(given);
}
template <class Char>
HANDLE WINAPI loadImage(HINSTANCE instance, const Char* name, UINT type, int width, int height, UINT flags) {
    CHECK(instance == ::GetModuleHandleW(nullptr));
    imageNumber = static_cast<int>(reinterpret_cast<ULONG_PTR>(name));
    image = {static_cast<int>(type), width, height, static_cast<int>(flags)};
    return Real<Char>::loadImage(instance, name, type, width, height, flags);
}

// A Windows without the hand.
template <class Char>
HCURSOR WINAPI loadCursor(HINSTANCE instance, const Char* name) {
    const bool isHand = reinterpret_cast<ULONG_PTR>(name) == 32649;
    return isHand ? nullptr : Real<Char>::loadCursor(instance, name);
}

// System parameters of the test's own.
std::vector<UINT> asked;
DWORD contrastFlags = 0;
template <class Record>
BOOL WINAPI contrast(UINT action, UINT size, void* record, UINT profile) {
    asked = {action, size, static_cast<Record*>(record)->cbSize, profile};
    static_cast<Record*>(record)->dwFlags = contrastFlags;
    return TRUE;
}
template <class Record>
BOOL WINAPI fonts(UINT action, UINT size, void* record, UINT profile) {
    asked = {action, size, static_cast<Record*>(record)->cbSize, profile};
    auto& font = static_cast<Record*>(record)->lfMessageFont;
    font.lfHeight = -24;
    font.lfWeight = 300;
    font.lfItalic = TRUE;
    return TRUE;
}

LOGFONTW described(HFONT font) {
    LOGFONTW description = {};
    REQUIRE(::GetObjectW(font, sizeof description, &description) > 0);
    return description;
}

std::vector<UINT_PTR> redrawn;
BOOL WINAPI redraw(HWND window, const RECT* place, HRGN region, UINT flags) {
    redrawn = {reinterpret_cast<UINT_PTR>(window), reinterpret_cast<UINT_PTR>(place),
               reinterpret_cast<UINT_PTR>(region), flags};
    return TRUE;
}

int resolution = 0, capability = 0, contexts = 0;
int WINAPI deviceCaps(HDC, int index) {
    capability = index;
    return resolution;
}
HDC(WINAPI* realGetContext)(HWND);
int(WINAPI* realRelease)(HWND, HDC);
HDC WINAPI getContext(HWND window) {
    ++contexts;
    return realGetContext(window);
}
int WINAPI releaseContext(HWND window, HDC context) {
    --contexts;
    return realRelease(window, context);
}

struct Making {
    ReplacedImport calls[6] = {{"CreateWindowExW", &createWindow<wchar_t>, Real<wchar_t>::createWindow},
                               {"CreateWindowExA", &createWindow<char>, Real<char>::createWindow},
                               {"RegisterClassW", &registerClass<wchar_t>, Real<wchar_t>::registerClass},
                               {"RegisterClassA", &registerClass<char>, Real<char>::registerClass},
                               {"LoadImageW", &loadImage<wchar_t>, Real<wchar_t>::loadImage},
                               {"LoadImageA", &loadImage<char>, Real<char>::loadImage}};
};

}  // namespace

TEST_CASE_FIXTURE(Making, "a control is a child of no size, with its number") {
    Probe parent;
    HWND control = win32::createControl(parent.handle(), L"STATIC", L"text", WS_BORDER, WS_EX_RIGHT, 77);
    CHECK(made.extendedStyle == WS_EX_RIGHT);
    CHECK(made.className == L"STATIC");
    CHECK(made.text == L"text");
    CHECK(made.style == (WS_CHILD | WS_BORDER));
    CHECK((made.place == std::vector<int>{0, 0, 0, 0}));
    CHECK(made.parent == parent.handle());
    CHECK(made.menu == reinterpret_cast<HMENU>(77));
    CHECK(made.instance == ::GetModuleHandleW(nullptr));
    CHECK(made.parameter == nullptr);
    CHECK(::GetDlgItem(parent.handle(), 77) == control);
    const wchar_t* const none = L"QuillonNoClass";
    ::CreateWindowExW(0, none, none, WS_CHILD, 0, 0, 0, 0, parent.handle(), nullptr, nullptr, nullptr);
    CHECK(raises(::GetLastError(), none,
                 [&] { win32::createControl(parent.handle(), L"QuillonNoClass", {}, 0, 0, 1); }));
}

TEST_CASE_FIXTURE(Making, "a window of our own has its class, and stands where Windows puts it") {
    Probe window(nullptr);
    CHECK(registered.style == CS_DBLCLKS);
    CHECK((registered.lpfnWndProc != nullptr));
    CHECK(registered.cbClsExtra == 0);
    CHECK(registered.cbWndExtra == 0);
    CHECK(registered.hInstance == ::GetModuleHandleW(nullptr));
    CHECK(registered.hCursor == ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)));
    CHECK(registered.hbrBackground == reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1));
    CHECK(imageNumber == 1);
    CHECK((image == std::vector<int>{IMAGE_ICON, 0, 0, LR_DEFAULTSIZE | LR_SHARED}));
    CHECK(made.className == L"QuillonProbe");
    CHECK(made.text == L"a title");
    CHECK(made.extendedStyle == WS_EX_CONTROLPARENT);
    CHECK((made.place == std::vector<int>(4, CW_USEDEFAULT)));
    CHECK(made.instance == ::GetModuleHandleW(nullptr));
    Probe child(window.handle(), 5);
    CHECK((made.place == std::vector<int>(4, 0)));
    CHECK(made.parent == window.handle());
    CHECK(made.menu == reinterpret_cast<HMENU>(5));
    CHECK(made.style == WS_CHILD);
    CHECK(win32::topLevelOf(child.handle()) == window.handle());
    CHECK(win32::topLevelOf(window.handle()) == window.handle());
    CHECK(raises(ERROR_TLW_WITH_WSCHILD, L"QuillonProbe", [] { Orphan{}; }));
}

TEST_CASE("messages reach the window's object, its errors the sink, and the end of the window both") {
    std::vector<std::wstring> errors;
    win32::setWindowErrorSink([&](const win32::Error& error) { errors.push_back(error.description); });
    HWND gone = nullptr;
    {
        Probe window;
        gone = window.handle();
        CHECK(win32::send(window.handle(), WM_APP, 3, -4) == 77);
        CHECK(win32::send(window.handle(), WM_APP) == 77);
        CHECK((window.asked == std::vector<std::pair<WPARAM, LPARAM>>{{3, -4}, {0, 0}}));
        CHECK(errors.empty());
        window.fails = true;
        CHECK(win32::send(window.handle(), WM_APP) == 0);
        CHECK((errors == std::vector<std::wstring>{L"failed"}));
        Probe closed;
        HWND handle = closed.handle();
        ::DestroyWindow(handle);
        CHECK(closed.handle() == nullptr);
        CHECK_FALSE(::IsWindow(handle));
        win32::setWindowErrorSink(nullptr);
        CHECK(win32::send(window.handle(), WM_APP) == 0);
        CHECK(errors.size() == 1);
    }
    CHECK_FALSE(::IsWindow(gone));
}

TEST_CASE("a window's text has any length, on Windows 98 no more than an edit control takes") {
    Probe window;
    for (size_t length : {0, 1, 260, 5000, 40000}) {
        const std::wstring text(length, L'x');
        win32::setText(window.handle(), text);
        const size_t most = win32::flavour() == win32::Flavour::ansi ? 30000 : length;
        CHECK(win32::windowText(window.handle()) == text.substr(0, most));
    }
}

TEST_CASE("what is sent to all reaches a window and everything in it") {
    Probe window, child(window.handle()), grandchild(child.handle()), second(window.handle());
    win32::sendToAll(window.handle(), WM_APP, 5, 6);
    win32::sendToAll(child.handle(), WM_APP);
    win32::setFont(window.handle(), reinterpret_cast<HFONT>(9));
    using Asked = std::vector<std::pair<WPARAM, LPARAM>>;
    CHECK((window.asked == Asked{{5, 6}, {9, TRUE}}));
    CHECK((child.asked == Asked{{5, 6}, {0, 0}, {9, TRUE}}));
    CHECK((grandchild.asked == Asked{{5, 6}, {0, 0}, {9, TRUE}}));
    CHECK((second.asked == Asked{{5, 6}, {9, TRUE}}));
    const ReplacedImport call("RedrawWindow", &redraw);
    win32::redrawAll(window.handle());
    CHECK((redrawn == std::vector<UINT_PTR>{reinterpret_cast<UINT_PTR>(window.handle()), 0, 0,
                                            RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN}));
}

TEST_CASE("the font of message boxes at a resolution, bold and underlined") {
    const ReplacedImport wideCall("SystemParametersInfoW", &fonts<NONCLIENTMETRICSW>);
    const ReplacedImport ansiCall("SystemParametersInfoA", &fonts<NONCLIENTMETRICSA>);
    const win32::OwnedFont font = win32::messageFont(2 * win32::systemDpi());
    const UINT size = win32::flavour() == win32::Flavour::wide ? 500 : 340;
    CHECK(asked[0] == SPI_GETNONCLIENTMETRICS);
    if (sizeof(void*) == 4) CHECK(asked[1] == size);
    CHECK(asked[2] == asked[1]);
    CHECK(asked[3] == 0);
    LOGFONTW expected = described(font.get());
    CHECK(expected.lfHeight == -48);
    CHECK(expected.lfWeight == 300);
    CHECK(expected.lfItalic != 0);
    CHECK(expected.lfUnderline == 0);
    const win32::OwnedFont bold = win32::boldVersionOf(font.get());
    const win32::OwnedFont underlined = win32::underlinedVersionOf(font.get());
    LOGFONTW other = described(bold.get());
    CHECK(other.lfWeight == FW_BOLD);
    CHECK(other.lfHeight == -48);
    CHECK(other.lfItalic != 0);
    CHECK(other.lfUnderline == 0);
    other = described(underlined.get());
    CHECK(other.lfUnderline != 0);
    CHECK(other.lfWeight == 300);
    CHECK(other.lfHeight == -48);
}

TEST_CASE("high contrast is what the user has chosen") {
    const ReplacedImport wideCall("SystemParametersInfoW", &contrast<HIGHCONTRASTW>);
    const ReplacedImport ansiCall("SystemParametersInfoA", &contrast<HIGHCONTRASTA>);
    contrastFlags = HCF_AVAILABLE;
    CHECK_FALSE(win32::isHighContrast());
    contrastFlags = HCF_AVAILABLE | HCF_HIGHCONTRASTON;
    CHECK(win32::isHighContrast());
    const UINT size = sizeof(HIGHCONTRASTW);
    CHECK((asked == std::vector<UINT>{SPI_GETHIGHCONTRAST, size, size, 0}));
}

TEST_CASE("the hand is an arrow where there is none") {
    CHECK(win32::handCursor() == ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32649)));
    HCURSOR arrow = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
    const ReplacedImport wideCall("LoadCursorW", &loadCursor<wchar_t>, Real<wchar_t>::loadCursor);
    const ReplacedImport ansiCall("LoadCursorA", &loadCursor<char>, Real<char>::loadCursor);
    CHECK(win32::handCursor() == arrow);
}

TEST_CASE("the screen's resolution is 96 where it tells none, a window's that of its monitor") {
    const ReplacedImport caps("GetDeviceCaps", &deviceCaps), get("GetDC", &getContext, realGetContext),
        release("ReleaseDC", &releaseContext, realRelease);
    for (const auto& [told, expected] : {std::pair(120, 120), {1, 1}, {0, 96}, {-1, 96}}) {
        resolution = told;
        CHECK(win32::systemDpi() == expected);
        CHECK(capability == LOGPIXELSX);
    }
    CHECK(contexts == 0);
    resolution = 777;
    Probe window, child(window.handle());
    // Before Windows 8.1 a window's is the screen's.
    const int own = win32::flavour() == win32::Flavour::wide ? 96 : 777;
    CHECK(win32::dpiOf(window.handle()) == own);
    // No window is on the first monitor.
    CHECK(win32::dpiOf(nullptr) == own);
    win32::keepDpi(window.handle(), 144);
    CHECK(win32::dpiOf(window.handle()) == 144);
    CHECK(win32::dpiOf(child.handle()) == 144);
    win32::forgetDpi(window.handle());
    CHECK(win32::dpiOf(child.handle()) == own);
}

TEST_CASE("twips as pixels and back") {
    CHECK(win32::toPixels(1440, 96) == 96);
    CHECK(win32::toPixels(15, 192) == 2);
    CHECK(win32::toPixels(8, 96) == 1);
    CHECK(win32::toTwips(96, 96) == 1440);
    CHECK(win32::toTwips(3, 144) == 30);
}
