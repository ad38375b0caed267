// What may happen while a message box or the pop-up menu lets messages run.
#include <doctest/doctest.h>

#include "app/FMain.h"
#include "app/main_menu.h"
#include "startup/ucOther.h"
#include "startup/ucRun.h"
#include "tests/support/page_fixture.h"
#include "win32/base/flavour.h"

namespace {

const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";

struct Nested : PageFixture {
    PageOf<startup::ucRun> page{parent.handle()};
    win32::ListView& list = page.ListViewObject();

    Nested() {
        for (const wchar_t* name : {L"a", L"b"}) {
            registry.setString(HKEY_LOCAL_MACHINE, run, name,
                               std::wstring(L"C:\\nowhere\\") + name + L".exe");
        }
        helmkit::Logger logger = log.logger();
        page.Init(logger);
    }
    void releaseRightButton() {
        NMITEMACTIVATE click = {};
        click.hdr = {list.window(), 101, static_cast<UINT>(NM_RCLICK)};
        ::SendMessageW(page.handle(), WM_NOTIFY, 101, reinterpret_cast<LPARAM>(&click));
    }
};

}  // namespace

TEST_CASE_FIXTURE(Nested, "closing from outside under the question: nothing is deleted") {
    desktop.whileOpen = [&](const std::wstring&) { ::DestroyWindow(parent.handle()); };
    desktop.messageBoxAnswers = {IDOK};
    press(page, 103);
    CHECK(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"a"));
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Nested, "closing from outside under the last box: the deletion is done and told") {
    desktop.whileOpen = [&](const std::wstring& text) {
        if (text.find(L"deleted from startup") != std::wstring::npos) ::DestroyWindow(parent.handle());
    };
    desktop.messageBoxAnswers = {IDOK, IDOK};
    press(page, 103);
    CHECK_FALSE(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"a"));
    REQUIRE(log.lines.size() == 1);
    CHECK(log.lines[0].level == 5);
}

TEST_CASE_FIXTURE(Nested, "closing from outside under the pop-up menu") {
    desktop.whileOpen = [&](const std::wstring&) { ::DestroyWindow(parent.handle()); };
    for (UINT command : {1u, 2u}) {
        desktop.popUpAnswers = {command};
        if (page.handle()) releaseRightButton();
        desktop.popUpAnswers.clear();
    }
    CHECK(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"a"));
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Nested, "a refresh under the question deletes the entry that was asked about") {
    desktop.whileOpen = [&](const std::wstring& text) {
        if (text.find(L"Are you sure") == std::wstring::npos) return;
        registry.setString(HKEY_LOCAL_MACHINE, run, L"0 first now", L"C:\\nowhere\\0.exe");
        page.RefreshList();
    };
    list.select(1);
    desktop.messageBoxAnswers = {IDOK, IDOK};
    press(page, 103);
    CHECK(desktop.messageBoxes.at(0).text == L"Are you sure you want to delete 'b' from startup?");
    CHECK(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"a"));
    CHECK(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"0 first now"));
    CHECK_FALSE(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"b"));
}

TEST_CASE_FIXTURE(Nested, "a refresh under the pop-up menu: its commands no longer mean a row") {
    desktop.whileOpen = [&](const std::wstring& text) {
        if (text.empty()) page.RefreshList();
    };
    desktop.popUpAnswers = {2};
    releaseRightButton();
    CHECK(desktop.shellRequests.empty());
    CHECK(desktop.messageBoxes.empty());
}

TEST_CASE_FIXTURE(Nested,
                  "a second click under the question asks again, and each answer counts for its own") {
    int depth = 0;
    desktop.whileOpen = [&](const std::wstring&) {
        if (++depth == 1) press(page, 103);
    };
    // The inner question is refused, the outer one confirmed and its result acknowledged.
    desktop.messageBoxAnswers = {IDCANCEL, IDOK, IDOK};
    press(page, 103);
    CHECK_FALSE(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"a"));
    CHECK(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"b"));
}

TEST_CASE_FIXTURE(Nested, "the session may end while a question is open") {
    desktop.whileOpen = [&](const std::wstring&) {
        CHECK(::SendMessageW(page.handle(), WM_QUERYENDSESSION, 0, 0) != 0);
    };
    desktop.messageBoxAnswers = {IDCANCEL};
    press(page, 103);
    CHECK(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"a"));
}

TEST_CASE_FIXTURE(Nested, "hostile names: the question fits on the screen and reads as one line") {
    const std::wstring name = L"x\r\nAre you sure? \x202E" + std::wstring(12000, L'y') + L"end";
    registry.setString(HKEY_CURRENT_USER, run, name, L"C:\\nowhere\\x.exe");
    page.RefreshList();
    REQUIRE(list.count() == 3);
    list.select(2);
    desktop.messageBoxAnswers = {IDOK, IDOK};
    press(page, 103);
    REQUIRE(desktop.messageBoxes.size() == 2);
    const std::wstring& text = desktop.messageBoxes[0].text;
    CHECK(text.size() < 1100);
    CHECK(text.find_first_of(L"\r\n\x202E") == std::wstring::npos);
    if (win32::flavour() == win32::Flavour::wide) {
        CHECK(text.find(L"delete 'x\x240D\x240A"
                        L"Are you sure? \xFFFDyyy") != std::wstring::npos);
        CHECK_FALSE(registry.hasValue(HKEY_CURRENT_USER, run, name));
    }
    CHECK(text.find(L"yend' from startup?") != std::wstring::npos);
}
