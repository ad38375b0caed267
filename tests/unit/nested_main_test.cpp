// The main window while one of its boxes is open.
#include <doctest/doctest.h>

#include "app/FMain.h"
#include "app/main_menu.h"
#include "tests/support/hostile_ground.h"
#include "tests/support/started_window.h"
#include "win32/system/system.h"

namespace {

const HKEY machine = HKEY_LOCAL_MACHINE;
const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";

struct Main : HostileGround {
    app::FMain window;
    bool hasHappened = false;

    Main() {
        for (const wchar_t* name : {L"a", L"b"})
            registry.setString(machine, run, name, L"C:\\nowhere\\x.exe");
        startWindow(window, desktop);
        desktop.messageBoxes.clear();
        HWND list = ::GetDlgItem(general(), 101);
        REQUIRE(::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0) == 2);
    }
    ~Main() {
        for (const wchar_t* name : {L"QLN.log", L"short.log"})
            ::DeleteFileW((win32::moduleFolder(nullptr) + L"\\" + name).c_str());
    }
    HWND general() { return ::FindWindowExW(window.handle(), nullptr, nullptr, L"ucRun1"); }
    void pressDelete() { ::SendMessageW(general(), WM_COMMAND, MAKEWPARAM(103, BN_CLICKED), 0); }
    void command(UINT id) { ::SendMessageW(window.handle(), WM_COMMAND, id, 0); }
    void release(UINT key) {
        MSG message = {};
        message.hwnd = general();
        message.message = WM_KEYUP;
        message.wParam = key;
        window.preview(message);
    }
    bool stands(const wchar_t* name) { return registry.hasValue(machine, run, name); }
    void during(const std::wstring& part, std::function<void()> event) {
        desktop.whileOpen = [this, part, event](const std::wstring& text) {
            if (text.find(part) == std::wstring::npos || std::exchange(hasHappened, true)) return;
            event();
        };
    }
};

const wchar_t question[] = L"Are you sure", deleted[] = L"is deleted from startup";

}  // namespace

TEST_CASE_FIXTURE(Main, "F5 and Refresh under the question: the entry that was asked about is deleted") {
    during(question, [&] {
        registry.setString(machine, run, L"0 first now", L"C:\\nowhere\\x.exe");
        release(VK_F5);
        command(app::mnuRefresh);
    });
    desktop.messageBoxAnswers = {IDOK, IDOK};
    pressDelete();
    CHECK(desktop.messageBoxes.at(0).text == L"Are you sure you want to delete 'a' from startup?");
    CHECK_FALSE(stands(L"a"));
    CHECK(stands(L"0 first now"));
    CHECK(stands(L"b"));
}

TEST_CASE_FIXTURE(Main, "Exit or closing under the question: nothing is deleted") {
    SUBCASE("Exit") {
        during(question, [&] { command(app::mnuExit); });
    }
    SUBCASE("closing") {
        during(question, [&] { ::SendMessageW(window.handle(), WM_CLOSE, 0, 0); });
    }
    desktop.messageBoxAnswers = {IDOK};
    pressDelete();
    CHECK(stands(L"a"));
    CHECK(desktop.messageBoxes.size() == 1);
    CHECK(window.handle() == nullptr);
    // Its end was asked for once; the message loop of the tests goes on.
    MSG message;
    CHECK(::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
}

TEST_CASE_FIXTURE(Main, "closing under the result: the deletion is done") {
    during(deleted, [&] { ::SendMessageW(window.handle(), WM_CLOSE, 0, 0); });
    desktop.messageBoxAnswers = {IDOK, IDOK};
    pressDelete();
    CHECK_FALSE(stands(L"a"));
    CHECK(stands(L"b"));
    MSG message;
    CHECK(::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
}

TEST_CASE_FIXTURE(Main, "the session may end under a box, and what was answered holds") {
    during(question, [&] {
        CHECK(::SendMessageW(window.handle(), WM_QUERYENDSESSION, 0, 0) != 0);
        ::SendMessageW(window.handle(), WM_ENDSESSION, FALSE, 0);
    });
    desktop.messageBoxAnswers = {IDOK, IDOK};
    pressDelete();
    CHECK_FALSE(stands(L"a"));
    CHECK(stands(L"b"));
}

TEST_CASE_FIXTURE(Main, "Ctrl+Tab, Backup and the button again under the question") {
    during(question, [&] {
        BYTE keys[256];
        ::GetKeyboardState(keys);
        keys[VK_CONTROL] = 0x80;
        ::SetKeyboardState(keys);
        release(VK_TAB);
        keys[VK_CONTROL] = 0;
        ::SetKeyboardState(keys);
        command(app::mnuBackup);
        pressDelete();
    });
    // Of the backup, of the second question, of the first and of its result.
    desktop.messageBoxAnswers = {IDOK, IDCANCEL, IDOK, IDOK};
    pressDelete();
    CHECK(desktop.messageBoxes.at(1).text == L"Backup complete successfully.");
    CHECK_FALSE(stands(L"a"));
    CHECK(stands(L"b"));
}

TEST_CASE_FIXTURE(Main, "under the box of a backup another backup, a refresh and the end") {
    during(L"Backup complete", [&] {
        command(app::mnuBackup);
        command(app::mnuRefresh);
        ::SendMessageW(window.handle(), WM_CLOSE, 0, 0);
    });
    desktop.messageBoxAnswers = {IDOK, IDOK};
    command(app::mnuBackup);
    CHECK(desktop.messageBoxes.size() == 2);
    CHECK(stands(L"a"));
    MSG message;
    CHECK(::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
}
