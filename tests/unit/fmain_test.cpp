#include <doctest/doctest.h>

#include <algorithm>
#include <sstream>

#include "app/FMain.h"
#include "app/component_check.h"
#include "app/main_menu.h"
#include "tests/support/page_fixture.h"
#include "tests/support/replaced_import.h"
#include "tests/support/started_window.h"
#include "win32/system/system.h"

namespace {

const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const wchar_t* const pageNames[] = {L"ucHelp1", L"ucRun1", L"ucWinlogon1", L"ucOther1", L"ucServices1"};

// The logs and backups are written beside the program, which is the test's own file here.
std::wstring beside(const std::wstring& name) {
    return win32::moduleFolder(nullptr) + L"\\" + name;
}

void removeBackups() {
    WIN32_FIND_DATAW found;
    HANDLE search = ::FindFirstFileW(beside(L"Backup\\*.reg").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return;
    do {
        ::DeleteFileW(beside(std::wstring(L"Backup\\") + found.cFileName).c_str());
    } while (::FindNextFileW(search, &found));
    ::FindClose(search);
}

struct Held {
    explicit Held(std::vector<int> keys) : keys(std::move(keys)) { set(0x80); }
    ~Held() { set(0); }
    void set(BYTE state) {
        BYTE all[256];
        ::GetKeyboardState(all);
        for (int key : keys) all[key] = state;
        ::SetKeyboardState(all);
    }
    std::vector<int> keys;
};

struct Main : PageFixture {
    app::FMain window;

    Main() {
        ::DeleteFileW(beside(L"QLN.log").c_str());
        ::DeleteFileW(beside(L"short.log").c_str());
        removeBackups();
    }
    void start() {
        startWindow(window, desktop);
        setClientTwips(9600, 6900);
    }
    std::vector<std::wstring> log() {
        std::istringstream lines(TempFolder::read(beside(L"QLN.log")));
        std::vector<std::wstring> texts;
        // time, level, source, code and text, divided by tabs
        for (std::string line; std::getline(lines, line);) {
            texts.push_back(
                win32::fromAnsi(line.substr(line.find('\t') + 1, line.size() - line.find('\t') - 2)));
        }
        return texts;
    }
    HWND child(const std::wstring& name) {
        return ::FindWindowExW(window.handle(), nullptr, nullptr, name.c_str());
    }
    std::wstring visiblePages() {
        std::wstring visible;
        for (const wchar_t* name : pageNames) {
            if (::GetWindowLongW(child(name), GWL_STYLE) & WS_VISIBLE) visible += std::wstring(name) + L" ";
        }
        return visible;
    }
    void release(UINT key, const std::vector<int>& held = {}) {
        Held keys(held);
        MSG message = {};
        message.hwnd = child(L"ucHelp1");
        // With Alt and without Ctrl held, a key comes as a system key.
        auto isHeld = [&](int key) { return std::count(held.begin(), held.end(), key) > 0; };
        message.message = isHeld(VK_MENU) && !isHeld(VK_CONTROL) ? WM_SYSKEYUP : WM_KEYUP;
        message.wParam = key;
        window.preview(message);
    }
    int selectedTab() { return static_cast<int>(::SendMessageW(strip(), TCM_GETCURSEL, 0, 0)) + 1; }
    HWND strip() { return ::GetDlgItem(window.handle(), 200); }
    HWND footer() { return ::GetDlgItem(window.handle(), 201); }
    int rows(const wchar_t* page) {
        return static_cast<int>(::SendMessageW(::GetDlgItem(child(page), 101), LVM_GETITEMCOUNT, 0, 0));
    }
    // Chooses in the main menu by the captions, from the bar down.
    void choose(const std::vector<std::wstring>& captions) {
        HMENU menu = ::GetMenu(window.handle());
        for (const std::wstring& caption : captions) {
            int row = 0;
            for (; row < ::GetMenuItemCount(menu); ++row) {
                wchar_t text[100] = L"";
                ::GetMenuStringW(menu, row, text, 100, MF_BYPOSITION);
                if (text == caption) break;
            }
            REQUIRE(row < ::GetMenuItemCount(menu));
            if (HMENU below = ::GetSubMenu(menu, row)) {
                menu = below;
            } else {
                command(::GetMenuItemID(menu, row));
            }
        }
    }
    void command(UINT id) { ::SendMessageW(window.handle(), WM_COMMAND, id, 0); }
    void setClientTwips(int width, int height) {
        const int dpi = win32::dpiOf(window.handle());
        RECT frame = {0, 0, win32::toPixels(width, dpi), win32::toPixels(height, dpi)};
        ::AdjustWindowRect(&frame, WS_OVERLAPPEDWINDOW, TRUE);
        ::SetWindowPos(window.handle(), nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                       SWP_NOMOVE | SWP_NOZORDER);
    }
    // left, top, width and height in pixels
    std::vector<int> place(HWND control) {
        RECT r;
        ::GetWindowRect(control, &r);
        ::MapWindowPoints(nullptr, window.handle(), reinterpret_cast<POINT*>(&r), 2);
        return {int(r.left), int(r.top), int(r.right - r.left), int(r.bottom - r.top)};
    }
    std::vector<int> pixels(std::vector<int> twips) {
        for (int& length : twips) length = win32::toPixels(length, win32::dpiOf(window.handle()));
        return twips;
    }
    std::string backup() { return TempFolder::read(beside(L"Backup\\Backup Nov 20, 2026 23-35-47.reg")); }
};

}  // namespace

TEST_CASE_FIXTURE(Main, "a missing plug-in: three start lines, the message, the critical box, and no start") {
    desktop.messageBoxAnswers = {IDOK};
    CHECK_FALSE(window.Form_Initialize());
    const std::wstring message =
        L"Component 'QLNCustom.dll' or one of its dependencies not correctly registered: a file is missing "
        L"or "
        L"invalid. Try to reinstall Quillon.";
    REQUIRE(desktop.messageBoxes.size() == 1);
    CHECK(desktop.messageBoxes[0].text == message);
    CHECK(desktop.messageBoxes[0].title == L"Quillon");
    CHECK(desktop.messageBoxes[0].style == 16);
    auto lines = log();
    REQUIRE(lines.size() == 4);
    CHECK(lines[0] == L"5\tFMain.Form_Initialize\t0\t********** start app");
    CHECK(lines[1] == L"5\tFMain.Form_Initialize\t0\tQuillon ver.2.1.0");
    // 60 seconds before the scripted time.
    CHECK(lines[2].find(L"5\tFMain.Form_Initialize\t0\tStartup: ") == 0);
    CHECK(lines[2].find(L"34:47") != std::wstring::npos);
    CHECK(lines[3] == L"4\tFMain.Form_Initialize\t0\t" + message);
}

TEST_CASE_FIXTURE(Main, "a missing library is named first, and telling so needs nothing of it") {
    classes.revoke();
    desktop.messageBoxAnswers = {IDOK};
    CHECK_FALSE(window.Form_Initialize());
    CHECK(desktop.messageBoxes.at(0).text.find(L"Component 'Helmkit.dll' or one") == 0);
    std::wstring message = L"left alone";
    CHECK_FALSE(app::ComponentCheck(message));
    CHECK(message == desktop.messageBoxes.at(0).text);
}

TEST_CASE_FIXTURE(Main,
                  "before Windows XP a component that lies there unregistered is said how to register") {
    struct LyingThere {
        LyingThere() { TempFolder::write(beside(L"QLNCustom.dll"), "x"); }
        void makeProgramFile() { TempFolder::write(beside(L"QLNCustom.dll"), "MZ..."); }
        ~LyingThere() { ::DeleteFileW(beside(L"QLNCustom.dll").c_str()); }
    };
    auto boxOf = [&](DWORD version) {
        desktop.windowsVersion = version;
        desktop.messageBoxAnswers = {IDOK};
        CHECK_FALSE(window.Form_Initialize());
        return desktop.messageBoxes.back().text;
    };
    std::wstring message;
    CHECK_FALSE(app::ComponentCheck(message));
    const DWORD all[] = {ScriptedDesktop::windows98,
                         ScriptedDesktop::windows2000,
                         ScriptedDesktop::windowsXp,
                         ScriptedDesktop::windows2003,
                         0x00000006,
                         0x00000106,
                         0x0000000A};
    for (DWORD version : all) CHECK(boxOf(version) == message);
    LyingThere file;
    for (DWORD version : all) CHECK(boxOf(version) == message);
    file.makeProgramFile();
    const std::wstring advice =
        L"\n\nThe file is there, but this version of Windows has to be told of it. Open an MS-DOS or command "
        L"prompt in the folder\n" +
        win32::moduleFolder(nullptr) +
        L"\nand run once:\n\n    regsvr32 Helmkit.dll\n    regsvr32 QLNCustom.dll\n\nThen start Quillon "
        L"again.";
    for (DWORD version : all) {
        CAPTURE(version);
        const bool isOld = version == ScriptedDesktop::windows98 || version == ScriptedDesktop::windows2000;
        CHECK(boxOf(version) == message + (isOld ? advice : std::wstring()));
        CHECK(log().back() == L"4\tFMain.Form_Initialize\t0\t" + message);
    }
    desktop.windowsVersion = ScriptedDesktop::windows98;
    message = L"left alone";
    CHECK_FALSE(app::ComponentCheck(message));
    CHECK(message.find(L"regsvr32") == std::wstring::npos);
}

TEST_CASE_FIXTURE(Main, "an error that reaches the border of a window procedure is logged") {
    start();
    struct Failing : win32::Window {
        Failing() { create(L"QuillonTestFailing", L"", WS_OVERLAPPEDWINDOW, 0, nullptr, nullptr); }
        LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
            if (message == WM_APP) win32::raise(E_FAIL, L"out of the procedure");
            return Window::onMessage(message, wParam, lParam);
        }
    } failing;
    CHECK(::SendMessageW(failing.handle(), WM_APP, 0, 0) == 0);
    CHECK(log().back() == L"4\tFMain.WindowProcedure\t-2147467259\tout of the procedure");
}

TEST_CASE_FIXTURE(Main, "the help page is shown first, and five tabs have their captions") {
    start();
    CHECK(visiblePages() == L"ucHelp1 ");
    const wchar_t* const captions[] = {L"Help", L"General Startup Programs", L"Winlogon Startup Programs",
                                       L"Custom Startup Programs", L"Services"};
    CHECK(::SendMessageW(strip(), TCM_GETITEMCOUNT, 0, 0) == 5);
    for (int tab = 0; tab < 5; ++tab) {
        wchar_t caption[50] = L"";
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = caption;
        item.cchTextMax = 50;
        ::SendMessageW(strip(), TCM_GETITEMW, tab, reinterpret_cast<LPARAM>(&item));
        CHECK(std::wstring(caption) == captions[tab]);
    }
    CHECK(win32::windowText(footer()) ==
          L"The latest version of Quillon is always available at http://mardelix.example/");
}

TEST_CASE_FIXTURE(Main, "Ctrl+Tab goes round forwards, Ctrl+Shift+Tab backwards, other modifiers allowed") {
    start();
    release(VK_TAB, {VK_CONTROL, VK_SHIFT});
    CHECK(visiblePages() == L"ucServices1 ");
    CHECK(selectedTab() == 5);
    release(VK_TAB, {VK_CONTROL});
    CHECK(visiblePages() == L"ucHelp1 ");
    CHECK(selectedTab() == 1);
    for (int page = 1; page < 5; ++page) {
        release(VK_TAB, {VK_CONTROL, VK_MENU});
        CHECK(visiblePages() == std::wstring(pageNames[page]) + L" ");
        CHECK(selectedTab() == page + 1);
    }
    release(VK_TAB);
    release(VK_TAB, {VK_SHIFT});
    CHECK(selectedTab() == 5);
}

TEST_CASE_FIXTURE(Main, "a click on a tab shows its page") {
    start();
    for (int tab : {3, 0, 4, 1, 2}) {
        ::SendMessageW(strip(), TCM_SETCURSEL, tab, 0);
        NMHDR change = {strip(), 200, static_cast<UINT>(TCN_SELCHANGE)};
        ::SendMessageW(window.handle(), WM_NOTIFY, 200, reinterpret_cast<LPARAM>(&change));
        CHECK(visiblePages() == std::wstring(pageNames[tab]) + L" ");
    }
    ::SendMessageW(strip(), TCM_SETCURSEL, static_cast<WPARAM>(-1), 0);
    NMHDR change = {strip(), 200, static_cast<UINT>(TCN_SELCHANGE)};
    ::SendMessageW(window.handle(), WM_NOTIFY, 200, reinterpret_cast<LPARAM>(&change));
    CHECK(visiblePages() == L"");
}

TEST_CASE_FIXTURE(Main,
                  "F5 alone refreshes every list, whatever page is shown; with a modifier it does nothing") {
    start();
    CHECK(rows(L"ucRun1") == 0);
    registry.setString(HKEY_LOCAL_MACHINE, run, L"a", L"x");
    registry.setString(HKEY_LOCAL_MACHINE,
                       L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify\\n", L"DLLName",
                       L"x");
    registry.setString(HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Services\\s", L"ImagePath", L"x");
    registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Command Processor", L"AutoRun", L"x");
    for (int modifier : {VK_SHIFT, VK_CONTROL, VK_MENU}) release(VK_F5, {modifier});
    CHECK(rows(L"ucRun1") == 0);
    removeBackups();
    release(VK_F5);
    for (const wchar_t* page : {L"ucRun1", L"ucWinlogon1", L"ucOther1", L"ucServices1"})
        CHECK(rows(page) == 1);
    CHECK(visiblePages() == L"ucHelp1 ");
    CHECK(::GetFileAttributesW(beside(L"Backup\\Backup Nov 20, 2026 23-35-47.reg").c_str()) ==
          INVALID_FILE_ATTRIBUTES);
}

TEST_CASE_FIXTURE(Main, "layout follows the window's inner size") {
    start();
    const int dpi = win32::dpiOf(window.handle());
    RECT client;
    ::GetClientRect(window.handle(), &client);
    const int w = win32::toTwips(client.right, dpi), h = win32::toTwips(client.bottom, dpi);
    CHECK(place(strip())[2] == pixels({w - 150})[0]);
    CHECK(place(strip())[3] == pixels({h - 450})[0]);
    for (const wchar_t* name : pageNames) {
        CHECK(place(child(name)) == pixels({285, 435, w - 150 - 435, h - 975}));
    }
    CHECK(place(footer())[1] == pixels({h - 300})[0]);
}

namespace {

RECT inside;
BOOL WINAPI toldInside(HWND, RECT* rect) {
    *rect = inside;
    return TRUE;
}

}  // namespace

TEST_CASE_FIXTURE(Main, "the measures of the window are exact to the twip") {
    start();
    const TwipResolution twips(window.handle());
    inside = {0, 0, 9600, 6900};
    // The window itself can hardly be larger than the screen.
    const ReplacedImport call("GetClientRect", &toldInside);
    ::SendMessageW(window.handle(), WM_SIZE, SIZE_RESTORED, 0);
    CHECK(place(strip()) == std::vector<int>{75, 60, 9450, 6450});
    for (const wchar_t* name : pageNames) {
        CHECK(place(child(name)) == std::vector<int>{285, 435, 9015, 5925});
    }
    CHECK(place(footer()) == std::vector<int>{120, 6600, 9000, 255});
}

TEST_CASE_FIXTURE(Main, "a window too low keeps the pages' last height and still moves the footer") {
    start();
    const auto before = place(child(L"ucRun1"));
    setClientTwips(9600, 900);
    RECT client;
    ::GetClientRect(window.handle(), &client);
    const int h = win32::toTwips(client.bottom, win32::dpiOf(window.handle()));
    REQUIRE(h < 975);
    for (const wchar_t* name : pageNames) CHECK(place(child(name))[3] == before[3]);
    CHECK(place(footer())[1] == pixels({h - 300})[0]);
    CHECK(place(strip())[3] == pixels({h - 450})[0]);
}

TEST_CASE_FIXTURE(Main, "every listed entry is logged, the custom page with two fields") {
    registry.setString(HKEY_LOCAL_MACHINE, run, L"a", L"C:\\nowhere\\a.exe");
    registry.setString(HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Services\\s", L"ImagePath",
                       L"C:\\s.exe");
    registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Command Processor", L"AutoRun", L"cmd");
    start();
    auto lines = log();
    REQUIRE(lines.size() == 7);
    CHECK(lines[4] == L"5\t\t0\tRun: 'a', 'Not specified', 'C:\\nowhere\\a.exe'");
    CHECK(lines[5] ==
          L"5\t\t0\tOther: 'Autorun for Command Processor particular to the computer (for any user)', 'cmd'");
    CHECK(lines[6] == L"5\t\t0\tServices: 'C:\\s.exe', 'Not specified', 'C:\\s.exe'");
}

TEST_CASE_FIXTURE(Main, "the backup is UTF-16 on the NT family and ANSI on Windows 98") {
    registry.setString(HKEY_LOCAL_MACHINE, run, L"a", L"x");
    start();
    CHECK(backup().substr(0, 6) == std::string("\xFF\xFE"
                                               "W\0i\0",
                                               6));
    desktop.windowsVersion = ScriptedDesktop::windows98;
    desktop.messageBoxAnswers = {IDOK};
    command(app::mnuBackup);
    CHECK(backup() ==
          "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run]\r\n\"a\"="
          "\"x\"\r\n");
    CHECK(desktop.messageBoxes.back().text == L"Backup complete successfully.");
    CHECK(desktop.messageBoxes.back().style == 64);
}

TEST_CASE_FIXTURE(Main, "Backup says complete even when it failed, and the log says why") {
    start();
    classes.revoke();
    classes.offer(CLSID_SystemServices);
    desktop.messageBoxAnswers = {IDOK};
    command(app::mnuBackup);
    CHECK(desktop.messageBoxes.back().text == L"Backup complete successfully.");
    CHECK(log().back().find(L"4\tFMain.BackupRegistry\t-") == 0);
}

TEST_CASE_FIXTURE(Main, "Restore tells what will happen and opens the backup folder") {
    start();
    desktop.messageBoxAnswers = {IDOK};
    desktop.expectedFolders = 1;
    command(app::mnuRestore);
    CHECK(desktop.messageBoxes.back().text ==
          L"Windows Explorer window will be opened now. Double click on backup file to restore. ");
    REQUIRE(desktop.folders.size() == 1);
    CHECK(desktop.folders[0].path == beside(L"Backup\\"));
}

TEST_CASE_FIXTURE(Main,
                  "a companion tool is started where it is installed, with or without a last backslash") {
    start();
    const size_t boxesBefore = desktop.messageBoxes.size();
    TempFolder::write(folder.file(L"Teselin.exe"), "x");
    for (const wchar_t* end : {L"", L"\\"}) {
        registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Mardelix\\Teselin", L"InstallPath",
                           folder.path() + end);
        desktop.programAnswers = {true};
        command(app::mnuTandem + 1);
        CHECK(desktop.programs.back().application == folder.file(L"Teselin.exe"));
        CHECK(desktop.programs.back().commandLine == L"\"" + folder.file(L"Teselin.exe") + L"\"");
    }
    CHECK(desktop.programs.size() == 2);
    CHECK(desktop.messageBoxes.size() == boxesBefore);
}

TEST_CASE_FIXTURE(Main, "a companion tool that is not there is offered for download") {
    start();
    registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Mardelix\\Corvana", L"InstallPath", folder.path());
    desktop.messageBoxAnswers = {IDOK, IDCANCEL};
    command(app::mnuTandem + 0);
    CHECK(desktop.messageBoxes[1].text == L"Corvana is not installed on your computer.");
    CHECK(desktop.messageBoxes[1].style == 48);
    CHECK(desktop.messageBoxes[2].text == L"Do you want to download Corvana from Mardelix web site?");
    CHECK(desktop.messageBoxes[2].style == 65);
    CHECK(desktop.programs.empty());

    desktop.messageBoxAnswers = {IDOK, IDOK};
    desktop.programAnswers = {false};
    command(app::mnuTandem + 3);
    CHECK(desktop.programs.back().commandLine == L"explorer http://mardelix.example\\Morrowfen.exe");
    CHECK(desktop.programs.back().application == win32::windowsFolder() + L"\\explorer.exe");
    CHECK(log().back().find(L"4\tFMain.mnuTandem_Click\t-2147024891\t") == 0);
    const size_t boxes = desktop.messageBoxes.size();
    command(app::mnuTandem + 2);
    CHECK(desktop.programs.size() == 1);
    CHECK(desktop.messageBoxes.size() == boxes);
}

TEST_CASE_FIXTURE(Main, "a companion tool that does not start is logged, and nothing is offered") {
    start();
    TempFolder::write(folder.file(L"Corvana.exe"), "x");
    registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Mardelix\\Corvana", L"InstallPath", folder.path());
    const size_t boxes = desktop.messageBoxes.size();
    desktop.programAnswers = {false};
    command(app::mnuTandem + 0);
    CHECK(desktop.messageBoxes.size() == boxes);
    CHECK(log().back().find(L"4\tFMain.mnuTandem_Click\t-2147024891\t" + folder.file(L"Corvana.exe")) == 0);
}

TEST_CASE_FIXTURE(Main, "every companion tool has its product's place, file and download address") {
    start();
    const std::pair<unsigned, std::wstring> tools[] = {{0, L"Corvana"}, {1, L"Teselin"}, {3, L"Morrowfen"}};
    for (const auto& [index, product] : tools) {
        CAPTURE(index);
        registry.setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Mardelix\\" + product, L"InstallPath",
                           folder.path());
        desktop.messageBoxAnswers = {IDOK, IDOK};
        desktop.programAnswers = {true};
        command(app::mnuTandem + index);
        CHECK(desktop.programs.back().commandLine ==
              L"explorer http://mardelix.example\\" + product + L".exe");
        TempFolder::write(folder.file(product + L".exe"), "x");
        desktop.programAnswers = {true};
        command(app::mnuTandem + index);
        CHECK(desktop.programs.back().application == folder.file(product + L".exe"));
    }
    CHECK(desktop.programs.size() == 6);
}

TEST_CASE_FIXTURE(Main, "the home page is opened by explorer") {
    start();
    desktop.programAnswers = {true};
    command(app::mnuVisitWebsite);
    CHECK(desktop.programs.back().commandLine == L"explorer http://mardelix.example/");
    CHECK(desktop.programs.back().application == win32::windowsFolder() + L"\\explorer.exe");
    // A failure is ignored here, and here alone.
    const size_t lines = log().size();
    desktop.programAnswers = {false};
    command(app::mnuVisitWebsite);
    CHECK(log().size() == lines);
}

namespace {

// What is done with the about box while it is open, from a timer: the box lets messages run.
struct OpenAbout {
    static inline HWND owner = nullptr;
    static inline bool wasSeen = false, wasModal = false;

    static BOOL CALLBACK keepAbout(HWND window, LPARAM box) {
        wchar_t name[50] = L"";
        ::GetClassNameW(window, name, 50);
        if (std::wstring(name) != L"QuillonAbout" || !::IsWindowVisible(window)) return TRUE;
        *reinterpret_cast<HWND*>(box) = window;
        return FALSE;
    }
    static void CALLBACK act(HWND, UINT, UINT_PTR timer, DWORD) {
        HWND box = nullptr;
        ::EnumThreadWindows(::GetCurrentThreadId(), keepAbout, reinterpret_cast<LPARAM>(&box));
        if (!box) return;
        ::KillTimer(nullptr, timer);
        wasSeen = true;
        wasModal = !::IsWindowEnabled(owner) && ::IsWindowEnabled(box) && ::GetWindow(box, GW_OWNER) == owner;
        for (HWND child = ::GetWindow(box, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
            if (win32::windowText(child).find(L"Visit Mardelix") == 0)
                ::SendMessageW(child, WM_LBUTTONUP, 0, 0);
        }
        HWND picture = ::FindWindowExW(box, nullptr, L"QuillonPicture", nullptr);
        ::SendMessageW(picture, WM_LBUTTONDBLCLK, 0, 0);
        ::PostMessageW(box, WM_KEYDOWN, VK_ESCAPE, 0);
    }
};

}  // namespace

TEST_CASE_FIXTURE(Main,
                  "the about box is modal, and explorer opens the home page from its link and picture") {
    start();
    OpenAbout::owner = window.handle();
    OpenAbout::wasSeen = OpenAbout::wasModal = false;
    desktop.programAnswers = {true, true};
    ::SetTimer(nullptr, 0, 10, OpenAbout::act);
    choose({L"&Help", L"&About Quillon..."});
    CHECK(OpenAbout::wasSeen);
    CHECK(OpenAbout::wasModal);
    CHECK(::IsWindowEnabled(window.handle()));
    REQUIRE(desktop.programs.size() == 2);
    for (const auto& program : desktop.programs) {
        CHECK(program.commandLine == L"explorer http://mardelix.example/");
        CHECK(program.application == win32::windowsFolder() + L"\\explorer.exe");
    }
}

TEST_CASE_FIXTURE(Main, "each row of the menu does what it says") {
    start();
    registry.setString(HKEY_LOCAL_MACHINE, run, L"a", L"x");
    choose({L"&File", L"&Refresh"});
    CHECK(rows(L"ucRun1") == 1);
    removeBackups();
    desktop.messageBoxAnswers = {IDOK, IDOK};
    choose({L"&Tools", L"&Backup Current Settings"});
    CHECK(desktop.messageBoxes.back().text == L"Backup complete successfully.");
    CHECK_FALSE(backup().empty());
    desktop.expectedFolders = 1;
    choose({L"&Tools", L"&Restore..."});
    CHECK(desktop.folders.size() == 1);
    for (const std::wstring tool : {L"Corvana", L"Teselin", L"Morrowfen"}) {
        desktop.messageBoxAnswers = {IDOK, IDCANCEL};
        choose({L"&Tools", L"&More Parasite Removers", L"&" + tool});
        CHECK(desktop.messageBoxes.back().text ==
              L"Do you want to download " + tool + L" from Mardelix web site?");
    }
    desktop.programAnswers = {true};
    choose({L"&Help", L"Quillon &Home Page"});
    CHECK(desktop.programs.size() == 1);
    HWND before = window.handle();
    choose({L"&File", L"&Exit"});
    CHECK_FALSE(::IsWindow(before));
    MSG quit;
    REQUIRE(::PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    CHECK(quit.wParam == 0);
}

TEST_CASE_FIXTURE(
    Main, "the keyboard stays where it was while another program is used, and leaves what is hidden") {
    start();
    window.show();
    HWND list = ::GetDlgItem(child(L"ucRun1"), 101);
    release(VK_TAB, {VK_CONTROL});
    ::SetFocus(list);
    REQUIRE(::GetFocus() == list);
    ::SendMessageW(window.handle(), WM_ACTIVATE, WA_INACTIVE, 0);
    ::SetFocus(footer());
    ::SendMessageW(window.handle(), WM_ACTIVATE, WA_ACTIVE, 0);
    ::SendMessageW(window.handle(), WM_SETFOCUS, 0, 0);
    CHECK(::GetFocus() == list);
    release(VK_TAB, {VK_CONTROL});
    CHECK(::GetFocus() == strip());
    ::SendMessageW(window.handle(), WM_SETFOCUS, 0, 0);
    CHECK(::GetFocus() == strip());
    ::SetFocus(child(L"ucWinlogon1"));
    CHECK(::GetFocus() == ::GetDlgItem(child(L"ucWinlogon1"), 101));
}

TEST_CASE_FIXTURE(Main, "the window opens at its design's size, its strip behind everything") {
    RECT client;
    ::GetClientRect(window.handle(), &client);
    CHECK(std::vector<int>{int(client.right), int(client.bottom)} == pixels({9600, 6900}));
    CHECK(::GetWindow(strip(), GW_HWNDLAST) == strip());
    CHECK(win32::windowText(window.handle()).empty());
    start();
    CHECK(place(strip())[0] == pixels({75})[0]);
    CHECK(place(strip())[1] == pixels({60})[0]);
}
