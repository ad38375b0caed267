// What a screen reader is told of the windows, and where the Tab key goes.
#include <doctest/doctest.h>
#include <oleacc.h>

#include <map>

#include "app/FMain.h"
#include "tests/support/page_fixture.h"
#include "tests/support/started_window.h"
#include "win32/com/com.h"

namespace {

const wchar_t* const listPages[] = {L"ucRun1", L"ucWinlogon1", L"ucOther1", L"ucServices1"};

struct Spoken {
    std::wstring name;
    LONG role = 0;
};

// By Microsoft Active Accessibility, as a screen reader asks it. Its library is no dependency of the tests.
Spoken spoken(HWND window) {
    using ObjectFromWindow = HRESULT(WINAPI*)(HWND, DWORD, REFIID, void**);
    static const HMODULE library = ::LoadLibraryW(L"oleacc.dll");
    static const auto objectFromWindow = reinterpret_cast<ObjectFromWindow>(
        reinterpret_cast<void*>(::GetProcAddress(library, "AccessibleObjectFromWindow")));
    REQUIRE((objectFromWindow != nullptr));
    // uuid of IAccessible
    const IID accessible = {0x618736E0, 0x3C3D, 0x11CF, {0x81, 0x0C, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};
    IAccessible* object = nullptr;
    REQUIRE(objectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), accessible,
                             reinterpret_cast<void**>(&object)) == S_OK);
    VARIANT self = {}, role = {};
    self.vt = VT_I4;
    BSTR name = nullptr;
    object->get_accName(self, &name);
    Spoken result = {name ? name : L"", 0};
    ::SysFreeString(name);
    if (object->get_accRole(self, &role) == S_OK && role.vt == VT_I4) result.role = role.lVal;
    object->Release();
    return result;
}

std::wstring classOf(HWND window) {
    wchar_t name[100] = {};
    ::GetClassNameW(window, name, 100);
    return name;
}

std::map<HWND, WNDPROC> procedures;
std::map<HWND, int> told;

LRESULT CALLBACK noting(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_SYSCOLORCHANGE) ++told[window];
    return ::CallWindowProcW(procedures.at(window), window, message, wParam, lParam);
}

struct Access : PageFixture {
    app::FMain window;

    Access() {
        startWindow(window, desktop);
        window.show();
    }
    ~Access() { ::ShowWindow(window.handle(), SW_HIDE); }

    HWND page(const wchar_t* name) { return ::FindWindowExW(window.handle(), nullptr, nullptr, name); }
    HWND inPage(const wchar_t* name, int id) { return ::GetDlgItem(page(name), id); }
    HWND strip() { return ::GetDlgItem(window.handle(), 200); }
    void choose(int tab) {
        ::SendMessageW(strip(), TCM_SETCURSEL, tab, 0);
        NMHDR changed = {strip(), 200, static_cast<UINT>(TCN_SELCHANGE)};
        ::SendMessageW(window.handle(), WM_NOTIFY, 200, reinterpret_cast<LPARAM>(&changed));
    }
    // Where the Tab key goes from the strip, until it is there again.
    std::vector<HWND> tabOrder(bool backwards) {
        std::vector<HWND> order;
        HWND at = strip();
        do {
            at = ::GetNextDlgTabItem(window.handle(), at, backwards);
            order.push_back(at);
        } while (at != strip() && order.size() < 20);
        return order;
    }
};

}  // namespace

TEST_CASE_FIXTURE(Access, "list, file box and button have names that a screen reader speaks") {
    const std::wstring programs = L"Detected Startup Programs:", file = L"Related File:";
    const struct {
        const wchar_t* page;
        std::wstring list, box, button;
    } expected[] = {
        {L"ucRun1", programs, file, L"Delete From Startup"},
        {L"ucWinlogon1", programs, file, L"Delete From Startup"},
        {L"ucOther1", programs, {}, L"Delete From Startup"},
        {L"ucServices1", L"Detected Services and Device Drivers (standard services and drivers are skipped):",
         file, L"Properties"},
    };
    for (const auto& row : expected) {
        CAPTURE(std::wstring(row.page));
        HWND list = inPage(row.page, 101), box = inPage(row.page, 102), button = inPage(row.page, 103);
        CHECK(spoken(list).name == row.list);
        CHECK(spoken(button).name == row.button);
        // Wine knows no roles of these two; Windows takes them from the class.
        CHECK(classOf(list) == L"SysListView32");
        CHECK(classOf(button) == L"Button");
        // Where a screen reader looks for a label: right before the control in the order of the windows.
        CHECK(win32::windowText(::GetWindow(list, GW_HWNDPREV)) == row.list);
        CHECK((box != nullptr) == !row.box.empty());
        if (!box) continue;
        CHECK(spoken(box).name == row.box);
        CHECK(spoken(box).role == ROLE_SYSTEM_TEXT);
    }
}

TEST_CASE_FIXTURE(Access,
                  "the Tab key goes from the strip to the page's list, file box and button and back") {
    for (int tab = 0; tab < 5; ++tab) {
        CAPTURE(tab);
        choose(tab);
        std::vector<HWND> expected;
        if (tab > 0) {
            for (int id : {101, 102, 103}) {
                if (HWND control = inPage(listPages[tab - 1], id)) expected.push_back(control);
            }
        }
        CHECK(expected.size() == (tab == 0 ? 0u : tab == 3 ? 2u : 3u));
        std::vector<HWND> backwards(expected.rbegin(), expected.rend());
        for (auto* order : {&expected, &backwards}) order->push_back(strip());
        CHECK(tabOrder(false) == expected);
        CHECK(tabOrder(true) == backwards);
    }
}

TEST_CASE_FIXTURE(Access, "new system colours are told to the common controls, which Windows does not do") {
    std::vector<HWND> controls = {strip()};
    for (const wchar_t* name : listPages) controls.push_back(inPage(name, 101));
    for (HWND control : controls) {
        procedures[control] = reinterpret_cast<WNDPROC>(
            ::SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(noting)));
    }
    ::SendMessageW(window.handle(), WM_SYSCOLORCHANGE, 0, 0);
    for (HWND control : controls) {
        CHECK(told[control] == 1);
        ::SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedures[control]));
    }
}
