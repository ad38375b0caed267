// Rules of the pages that their own tests do not hold: deletion in every place, pictures, mouse, design.
#include <doctest/doctest.h>

#include <algorithm>
#include <map>

#include "startup/browser_checks.h"
#include "startup/ucOther.h"
#include "startup/ucRun.h"
#include "startup/ucServices.h"
#include "startup/ucWinlogon.h"
#include "tests/support/page_fixture.h"
#include "win32/files/files.h"

namespace {

const std::wstring cv = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\";
const std::wstring policy = cv + L"policies\\Explorer\\Run";
const std::wstring notify = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify";
const std::wstring winlogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";

struct Rules : PageFixture {
    helmkit::Logger logger = log.logger();

    template <class Category>
    std::unique_ptr<PageOf<Category>> shown() {
        auto page = std::make_unique<PageOf<Category>>(parent.handle());
        ::SetWindowPos(page->handle(), nullptr, 0, 0, 400, 260, SWP_NOZORDER);
        page->Init(logger);
        return page;
    }
    void erase(startup::StartupListControl& page, int row, std::deque<int> answers = {IDOK, IDOK}) {
        page.ListViewObject().select(row);
        desktop.messageBoxAnswers = answers;
        press(page, 103);
    }
    static std::wstring column(HWND list, int number) {
        wchar_t title[50] = L"";
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT;
        column.pszText = title;
        column.cchTextMax = 50;
        ::SendMessageW(list, LVM_GETCOLUMNW, number, reinterpret_cast<LPARAM>(&column));
        return title;
    }
    // A right click as the mouse makes one: the button goes down and up over the list.
    static void rightClick(HWND list, POINT at) {
        ::PostMessageW(list, WM_RBUTTONUP, 0, MAKELPARAM(at.x, at.y));
        ::SendMessageW(list, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(at.x, at.y));
        MSG message;
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) ::DispatchMessageW(&message);
    }
};

}  // namespace

TEST_CASE_FIXTURE(Rules, "an entry of each of the eleven places is deleted there and nowhere else") {
    const std::pair<HKEY, std::wstring> places[] = {
        {HKEY_LOCAL_MACHINE, cv + L"Run"},
        {HKEY_CURRENT_USER, cv + L"Run"},
        {HKEY_LOCAL_MACHINE, cv + L"RunServices"},
        {HKEY_CURRENT_USER, cv + L"RunServices"},
        {HKEY_LOCAL_MACHINE, cv + L"RunOnce"},
        {HKEY_CURRENT_USER, cv + L"RunOnce"},
        {HKEY_LOCAL_MACHINE, cv + L"RunOnce\\Setup"},
        {HKEY_LOCAL_MACHINE, cv + L"RunServicesOnce"},
        {HKEY_CURRENT_USER, cv + L"RunServicesOnce"},
        {HKEY_LOCAL_MACHINE, policy},
        {HKEY_CURRENT_USER, policy},
    };
    for (const auto& [hive, key] : places) registry.setString(hive, key, L"same", L"C:\\nowhere\\x.exe");
    auto page = shown<startup::ucRun>();
    for (size_t left = std::size(places); left > 0; --left) {
        REQUIRE(page->rows().size() == left);
        const auto& [hive, key] = places[std::size(places) - left];
        const startup::StartupItem item = page->itemOf(0);
        CHECK(item.hive() == (hive == HKEY_LOCAL_MACHINE ? helmkit::HKLM : helmkit::HKCU));
        CHECK(item.keyPath() == key);
        CHECK(item.valueName() == L"same");
        erase(*page, 0);
        for (size_t i = 0; i < std::size(places); ++i) {
            CHECK(registry.hasValue(places[i].first, places[i].second, L"same") ==
                  (i > std::size(places) - left));
        }
        CHECK(log.lines.back().text ==
              std::wstring(L"Deleting common(") +
                  (hive == HKEY_LOCAL_MACHINE ? L"HKEY_LOCAL_MACHINE" : L"HKEY_CURRENT_USER") + L", '" + key +
                  L"', 'C:\\nowhere\\x.exe', 0, 0)");
    }
}

TEST_CASE_FIXTURE(Rules, "a REG_EXPAND_SZ of the policy key is expanded as any other") {
    const std::wstring file = program(windows + L"\\p.exe", {{L"FileDescription", L"Policy program"}});
    registry.setString(HKEY_LOCAL_MACHINE, policy, L"e", L"%windir%\\p.exe", REG_EXPAND_SZ);
    registry.setString(HKEY_LOCAL_MACHINE, policy, L"s", L"%windir%\\p.exe", REG_SZ);
    auto page = shown<startup::ucRun>();
    REQUIRE(page->rows().size() == 2);
    CHECK(page->rows()[0].text == L"Policy program");
    CHECK(page->rows()[0].file == win32::longPath(file));
    CHECK(page->rows()[1].text == L"%windir%\\p.exe");
}

TEST_CASE_FIXTURE(Rules, "a library that Windows needs, elsewhere, is deleted") {
    const VersionStrings maker = {{L"CompanyName", L"Microsoft Corporation"}};
    registry.setString(HKEY_LOCAL_MACHINE, notify + L"\\needed", L"DLLName",
                       program(windows + L"\\system32\\wlnotify.dll", maker));
    registry.setString(HKEY_LOCAL_MACHINE, notify + L"\\other", L"DLLName",
                       program(folder.file(L"wlnotify.dll"), maker));
    auto page = shown<startup::ucWinlogon>();
    erase(*page, 0, {IDOK});
    CHECK(registry.hasKey(HKEY_LOCAL_MACHINE, notify + L"\\needed"));
    erase(*page, 1);
    CHECK(registry.hasKey(HKEY_LOCAL_MACHINE, notify + L"\\needed"));
    CHECK_FALSE(registry.hasKey(HKEY_LOCAL_MACHINE, notify + L"\\other"));
}

TEST_CASE_FIXTURE(Rules, "each page has its own columns, heading, note and button") {
    const struct {
        std::unique_ptr<startup::StartupListControl> page;
        const wchar_t *first, *second, *note, *button;
    } pages[] = {
        {shown<startup::ucRun>(), L"Program Name", L"Manufacturer", L"Related File:",
         L"&Delete From Startup"},
        {shown<startup::ucWinlogon>(), L"Program Name", L"Manufacturer", L"Related File:",
         L"&Delete From Startup"},
        {shown<startup::ucOther>(), L"Location", L"Value",
         L"All settings containing empty values are skipped", L"&Delete From Startup"},
        {shown<startup::ucServices>(), L"Program Name", L"Manufacturer", L"Related File:", L"&Properties"},
    };
    for (const auto& row : pages) {
        HWND list = row.page->ListViewObject().window();
        CHECK(column(list, 0) == row.first);
        CHECK(column(list, 1) == row.second);
        CHECK(win32::windowText(control(*row.page, 105)) == row.note);
        CHECK(win32::windowText(control(*row.page, 103)) == row.button);
    }
}

TEST_CASE_FIXTURE(Rules, "Winlogon: menu, keys and Properties are those of the common page") {
    registry.setString(HKEY_LOCAL_MACHINE, notify + L"\\p", L"DLLName", program(folder.file(L"p.dll")));
    registry.setString(HKEY_LOCAL_MACHINE, notify + L"\\q", L"DLLName", L"");
    auto page = shown<startup::ucWinlogon>();
    HWND list = page->ListViewObject().window();
    desktop.popUpAnswers = {2};
    desktop.shellAnswers = {true};
    ::SendMessageW(list, WM_KEYUP, VK_APPS, 0);
    CHECK(desktop.popUps.at(0).captions == std::vector<std::wstring>{L"&Delete", L"", L"&Properties"});
    REQUIRE(desktop.shellRequests.size() == 1);
    CHECK(desktop.shellRequests[0].file == page->itemOf(0).file());
    page->ListViewObject().select(1);
    desktop.popUpAnswers = {0};
    ::SendMessageW(list, WM_KEYUP, VK_APPS, 0);
    CHECK(desktop.popUps.at(1).captions == std::vector<std::wstring>{L"&Delete"});
    CHECK(fileBox(*page) == L"Startup program is improperly configured");
}

TEST_CASE_FIXTURE(Rules, "the right button by the mouse: the menu over a row, none over the empty area") {
    registry.setString(HKEY_LOCAL_MACHINE, cv + L"Run", L"a", L"C:\\nowhere\\a.exe");
    auto page = shown<startup::ucRun>();
    HWND list = page->ListViewObject().window();
    RECT row = {};
    row.left = LVIR_BOUNDS;
    ::SendMessageW(list, LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&row));
    desktop.popUpAnswers = {0};
    rightClick(list, {row.left + 30, (row.top + row.bottom) / 2});
    CHECK(desktop.popUps.size() == 1);
    RECT client;
    ::GetClientRect(list, &client);
    rightClick(list, {10, client.bottom - 3});
    CHECK(desktop.popUps.size() == 1);
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Rules, "Alt+Enter without a selection does nothing") {
    auto page = shown<startup::ucRun>();
    BYTE keys[256];
    ::GetKeyboardState(keys);
    keys[VK_MENU] = 0x80;
    ::SetKeyboardState(keys);
    ::SendMessageW(page->ListViewObject().window(), WM_SYSKEYUP, VK_RETURN, 0);
    keys[VK_MENU] = 0;
    ::SetKeyboardState(keys);
    CHECK(desktop.shellRequests.empty());
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Rules, "the pictures: a green check mark, a blue question mark, a red exclamation mark") {
    auto page = shown<startup::ucRun>();
    auto images = reinterpret_cast<HIMAGELIST>(
        ::SendMessageW(page->ListViewObject().window(), LVM_GETIMAGELIST, LVSIL_SMALL, 0));
    REQUIRE(::ImageList_GetImageCount(images) == 3);
    auto picture = [&](startup::Icon icon) {
        HDC screen = ::GetDC(nullptr), context = ::CreateCompatibleDC(screen);
        HBITMAP bitmap = ::CreateCompatibleBitmap(screen, 16, 16);
        HGDIOBJ before = ::SelectObject(context, bitmap);
        ::PatBlt(context, 0, 0, 16, 16, BLACKNESS);
        ::ImageList_Draw(images, static_cast<int>(icon), context, 0, 0, ILD_NORMAL);
        std::map<std::pair<int, int>, COLORREF> pixels;
        for (int x = 0; x < 16; ++x) {
            for (int y = 0; y < 16; ++y) pixels[{x, y}] = ::GetPixel(context, x, y);
        }
        ::SelectObject(context, before);
        ::DeleteObject(bitmap);
        ::DeleteDC(context);
        ::ReleaseDC(nullptr, screen);
        return pixels;
    };
    const COLORREF background = RGB(0, 0, 0), sign = RGB(255, 255, 255);
    // The colour that most pixels of a picture have, apart from the background and the white sign.
    auto circle = [&](startup::Icon icon) {
        std::map<COLORREF, int> counts;
        for (const auto& [place, colour] : picture(icon)) {
            if (colour != background && colour != sign) ++counts[colour];
        }
        REQUIRE_FALSE(counts.empty());
        return std::max_element(counts.begin(), counts.end(),
                                [](auto& a, auto& b) { return a.second < b.second; })
            ->first;
    };
    const COLORREF needed = circle(startup::Icon::protectedEntry), ordinary = circle(startup::Icon::ordinary),
                   changed = circle(startup::Icon::exclamation);
    CHECK(GetGValue(needed) > GetRValue(needed));
    CHECK(GetGValue(needed) > GetBValue(needed));
    CHECK(GetBValue(ordinary) > GetRValue(ordinary));
    CHECK(GetBValue(ordinary) > GetGValue(ordinary));
    CHECK(GetRValue(changed) > GetGValue(changed));
    CHECK(GetRValue(changed) > GetBValue(changed));
    // A pixel that one sign alone has: the check mark's end, the question mark's top, the stem of the
    // exclamation mark.
    const std::map<startup::Icon, std::pair<int, int>> signs = {{startup::Icon::protectedEntry, {11, 4}},
                                                                {startup::Icon::ordinary, {6, 3}},
                                                                {startup::Icon::exclamation, {7, 5}}};
    for (const auto& [icon, own] : signs) {
        for (const auto& [other, place] : signs) CHECK((picture(icon).at(place) == sign) == (icon == other));
    }
}

TEST_CASE_FIXTURE(Rules, "ProductDescription without ProductName falls back") {
    registry.setString(HKEY_LOCAL_MACHINE, policy, L"v",
                       program(folder.file(L"d.exe"), {{L"ProductDescription", L"unused"}}));
    registry.setString(HKEY_LOCAL_MACHINE, notify + L"\\p", L"DLLName", folder.file(L"d.exe"));
    registry.setString(HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Services\\s", L"ImagePath",
                       folder.file(L"d.exe"));
    CHECK(shown<startup::ucRun>()->rows().at(0).text == folder.file(L"d.exe"));
    CHECK(shown<startup::ucWinlogon>()->rows().at(0).text == folder.file(L"d.exe"));
    const auto services = shown<startup::ucServices>()->rows();
    CHECK(services.at(0).text == services.at(0).file);
}

TEST_CASE_FIXTURE(Rules, "a file that changes under its path shows its new maker after a refresh") {
    const std::wstring file = program(folder.file(L"m.exe"), {{L"CompanyName", L"First"}});
    registry.setString(HKEY_LOCAL_MACHINE, cv + L"Run", L"m", file);
    auto page = shown<startup::ucRun>();
    CHECK(page->rows().at(0).second == L"First");
    ::DeleteFileW(file.c_str());
    program(file, {{L"CompanyName", L"Second"}});
    CHECK(page->rows().at(0).second == L"First");
    page->RefreshList();
    CHECK(page->rows().at(0).second == L"Second");
}

TEST_CASE_FIXTURE(Rules, "a file that has come since is found by a refresh: the resolver is a new one") {
    const std::wstring later = folder.file(L".\\later.dll");
    registry.setString(HKEY_LOCAL_MACHINE, cv + L"Run", L"m", later);
    registry.setString(HKEY_LOCAL_MACHINE, notify + L"\\p", L"DLLName", later);
    registry.setString(HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Services\\s", L"ImagePath", later);
    const std::unique_ptr<startup::StartupListControl> pages[] = {
        shown<startup::ucRun>(), shown<startup::ucWinlogon>(), shown<startup::ucServices>()};
    for (const auto& page : pages) CHECK(page->rows().at(0).file == later);
    program(folder.file(L"later.dll"));
    for (const auto& page : pages) {
        page->RefreshList();
        CHECK(page->rows().at(0).file == win32::longPath(folder.file(L"later.dll")));
    }
}

TEST_CASE_FIXTURE(Rules, "custom: a startup folder is opened and the list refreshed; Cancel does neither") {
    const std::wstring startMenu = folder.file(L"Start Menu");
    ::CreateDirectoryW(startMenu.c_str(), nullptr);
    TempFolder::write(startMenu + L"\\a.lnk", "x");
    const std::wstring shellFolders = cv + L"Explorer\\Shell Folders";
    registry.setString(HKEY_LOCAL_MACHINE, shellFolders, L"Common Startup", startMenu);
    registry.setString(HKEY_CURRENT_USER, shellFolders, L"Startup", startMenu);
    auto page = shown<startup::ucOther>();
    REQUIRE(page->rows().size() == 2);
    for (int row : {0, 1}) {
        registry.setString(HKEY_LOCAL_MACHINE, winlogon, L"shell", L"");
        erase(*page, row, {IDCANCEL});
        CHECK(desktop.messageBoxes.back().style == 49);
        registry.setString(HKEY_LOCAL_MACHINE, winlogon, L"shell", L"evil.exe");
        CHECK(page->rows().size() == 2);  // not refreshed
        desktop.programAnswers = {true};
        erase(*page, row, {IDOK});
        CHECK(desktop.programs.back().commandLine == L"explorer " + startMenu);
        CHECK(page->rows().size() == 3);
        registry.setString(HKEY_LOCAL_MACHINE, winlogon, L"shell", L"");
        page->RefreshList();
    }
    CHECK(log.lines.empty());
    registry.setString(HKEY_LOCAL_MACHINE, winlogon, L"shell", L"evil.exe");
    desktop.programAnswers = {false};
    erase(*page, 0, {IDOK});
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].source == L"ucOther.cmdDelete_Click");
    CHECK(log.lines[0].level == 4);
    CHECK(log.lines[0].code == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    CHECK(page->rows().size() == 2);  // not refreshed
}

TEST_CASE_FIXTURE(Rules, "custom: a place at its default is refused and never written") {
    registry.setString(HKEY_CURRENT_USER, L"Control Panel\\Desktop", L"SCRNSAVE.EXE", L"(None)");
    registry.setString(HKEY_LOCAL_MACHINE, winlogon, L"shell", L"EXPLORER.EXE");
    const std::string systemIni = "shell=EXPLORER.EXE\nother";
    TempFolder::write(windows + L"\\system.ini", systemIni);
    auto page = shown<startup::ucOther>();
    REQUIRE(page->rows().size() == 3);
    for (int row = 0; row < 3; ++row) {
        erase(*page, row, {IDOK});
        CHECK(desktop.messageBoxes.back().style == 48);
        CHECK(desktop.messageBoxes.back().text ==
              L"Unwilling to perform. " + page->rows()[row].text + L" doesn't contain excess startups.");
    }
    CHECK(page->rows()[0].second == L"EXPLORER.EXE");
    page->RefreshList();
    CHECK(page->rows()[0].second == L"EXPLORER.EXE");
    CHECK(page->rows()[1].second == L"(None)");
    CHECK(TempFolder::read(windows + L"\\system.ini") == systemIni);
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Rules, "custom: the layout has the note on the button's row and the list down to it") {
    auto page = shown<startup::ucOther>();
    ::SetWindowPos(page->handle(), nullptr, 0, 0, 600, 400, SWP_NOZORDER);
    auto place = [&](HWND window) {
        RECT r;
        ::GetWindowRect(window, &r);
        ::MapWindowPoints(nullptr, page->handle(), reinterpret_cast<POINT*>(&r), 2);
        return r;
    };
    const RECT list = place(control(*page, 101)), note = place(control(*page, 105)),
               button = place(control(*page, 103));
    const int dpi = win32::dpiOf(page->handle());
    CHECK(note.top == button.top);
    CHECK(list.left == 0);
    CHECK(list.right == 600);
    CHECK(std::abs((note.top - list.bottom) - win32::toPixels(60, dpi)) <= 1);
    CHECK(std::abs((400 - button.bottom) - win32::toPixels(60, dpi)) <= 1);
    CHECK(std::abs((600 - button.right) - win32::toPixels(15, dpi)) <= 1);
    HWND view = page->ListViewObject().window();
    const int half = win32::toPixels((win32::toTwips(600, dpi) - 120 - 255) / 2, dpi);
    for (int column : {0, 1}) CHECK(::SendMessageW(view, LVM_GETCOLUMNWIDTH, column, 0) == half);
}

TEST_CASE_FIXTURE(Rules, "the measures of a page are exact to the twip") {
    const TwipResolution twips(parent.handle());
    const std::unique_ptr<startup::StartupListControl> pages[] = {shown<startup::ucRun>(),
                                                                  shown<startup::ucOther>()};
    using Place = std::vector<int>;
    for (const auto& page : pages) {
        ::SetWindowPos(page->handle(), nullptr, 0, 0, 9000, 6000, SWP_NOZORDER);
        auto place = [&](int id) { return placeIn(page->handle(), control(*page, id)); };
        const bool hasBox = page == pages[0];
        CHECK(place(103) == Place{9000 - 1995 - 15, 6000 - 375 - 60, 1995, 375});
        if (hasBox) CHECK(place(102) == Place{1110, 5565 - 360, 9000 - 1110 - 15, 315});
        CHECK(place(105) == Place{0, hasBox ? 5205 + 30 : 5565, hasBox ? 1050 : 5000, 255});
        CHECK(place(104) == Place{0, 0, 9000, 255});
        CHECK(place(101) == Place{0, 285, 9000, (hasBox ? 5205 : 5565) - 285 - 60});
        for (int column : {0, 1})
            CHECK(::SendMessageW(control(*page, 101), LVM_GETCOLUMNWIDTH, column, 0) == 4312);
    }
}

TEST_CASE_FIXTURE(Rules, "the browser checks expand what they are given") {
    Variable folder(L"QuillonTestFolder", L"");
    wchar_t windowsFolder[MAX_PATH];
    ::GetWindowsDirectoryW(windowsFolder, MAX_PATH);
    win32::setEnvironmentVariable(L"QuillonTestFolder", windowsFolder);
    CHECK(startup::blankPageCheck(L"%QuillonTestFolder%\\system32\\BLANK.htm") ==
          startup::Icon::protectedEntry);
    CHECK(startup::blankPageCheck(L"%QuillonNoFolder%\\system32\\blank.htm") == startup::Icon::exclamation);
}
