// On every page that deletes: what may happen under the question, under the result and under the pop-up menu.
#include <doctest/doctest.h>

#include "helmkit/client/registry_access.h"
#include "startup/ucOther.h"
#include "startup/ucRun.h"
#include "startup/ucServices.h"
#include "startup/ucWinlogon.h"
#include "tests/support/hostile_ground.h"

namespace {

const HKEY machine = HKEY_LOCAL_MACHINE;
const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const std::wstring notify = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify";
const std::wstring winlogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
const std::wstring services = L"SYSTEM\\CurrentControlSet\\Services";

enum Box { question, result };

template <class Category>
struct Nested : HostileGround {
    PageOf<Category> page{parent.handle()};
    win32::ListView& list = page.ListViewObject();

    // Entries under a first one, which comes and goes with a refresh.
    Nested() {
        for (const wchar_t* name : {L"b", L"c"}) seed(name);
        registry.setString(machine, winlogon, L"shell", L"b.exe");
        registry.setString(machine, winlogon, L"VmApplet", L"c.exe");
        page.Init(logger);
        REQUIRE(list.count() == 2);
        list.select(0);
    }
    void seed(const std::wstring& name) {
        registry.setString(machine, run, name, L"C:\\nowhere\\x.exe");
        registry.setString(machine, notify + L"\\" + name, L"DLLName", L"C:\\nowhere\\x.dll");
        registry.setString(machine, services + L"\\" + name, L"ImagePath", L"C:\\nowhere\\x.sys");
    }
    // True while the first entry is as it was, or the second.
    bool stands(const wchar_t* name) {
        if constexpr (std::is_same_v<Category, startup::ucRun>) return registry.hasValue(machine, run, name);
        if constexpr (std::is_same_v<Category, startup::ucWinlogon>)
            return registry.hasKey(machine, notify + L"\\" + name);
        if constexpr (std::is_same_v<Category, startup::ucOther>) {
            const bool isFirst = name == std::wstring(L"b");
            return registry.bytes(machine, winlogon, isFirst ? L"shell" : L"VmApplet")[0] == *name;
        }
        return true;
    }
    // Deletes the first entry; `event` happens once, while that box is open.
    void deleteDuring(Box box, std::function<void()> event, std::deque<int> answers) {
        int boxes = 0;
        desktop.whileOpen = [&, event](const std::wstring&) {
            if (boxes++ == box) event();
        };
        desktop.messageBoxAnswers = answers;
        press(page, 103);
        desktop.whileOpen = nullptr;
        CHECK(stands(L"c"));
    }
    void rightClick() {
        NMITEMACTIVATE click = {};
        click.hdr = {list.window(), 101, static_cast<UINT>(NM_RCLICK)};
        ::SendMessageW(page.handle(), WM_NOTIFY, 101, reinterpret_cast<LPARAM>(&click));
    }
};

}  // namespace

TEST_CASE_TEMPLATE("closing from outside under each box", Category, startup::ucRun, startup::ucWinlogon,
                   startup::ucOther) {
    for (Box box : {question, result}) {
        CAPTURE(box);
        Nested<Category> n;
        n.deleteDuring(
            box, [&] { ::DestroyWindow(n.parent.handle()); },
            box == question ? std::deque<int>{IDOK} : std::deque<int>{IDOK, IDOK});
        // Who closes the window has not said yes.
        CHECK(n.stands(L"b") == (box == question));
        CHECK(n.log.lines.size() == (box == question ? 0 : 1));
    }
}

TEST_CASE_TEMPLATE("a refresh under each box, with a new first entry", Category, startup::ucRun,
                   startup::ucWinlogon, startup::ucOther) {
    for (Box box : {question, result}) {
        CAPTURE(box);
        Nested<Category> n;
        n.deleteDuring(box,
                       [&] {
                           n.seed(L"a");
                           n.page.RefreshList();
                       },
                       {IDOK, IDOK});
        CHECK_FALSE(n.stands(L"b"));
        CHECK((std::is_same_v<Category, startup::ucOther> || n.stands(L"a")));
    }
}

TEST_CASE_TEMPLATE("the entry that is asked about goes meanwhile, and a refresh shows it", Category,
                   startup::ucRun, startup::ucWinlogon) {
    Nested<Category> n;
    n.deleteDuring(question,
                   [&] {
                       helmkit::RegistryAccess().DeleteValue(helmkit::HKLM, run, L"b");
                       helmkit::RegistryAccess().DeleteKey(helmkit::HKLM, notify + L"\\b");
                       n.page.RefreshList();
                       CHECK(n.list.count() == 1);
                   },
                   {IDOK, IDOK});
    CHECK(n.desktop.messageBoxes.at(1).text.find(L"Access denied. ") == 0);
    CHECK(n.list.count() == 1);
}

TEST_CASE_TEMPLATE("the button again under each box, both answered", Category, startup::ucRun,
                   startup::ucWinlogon) {
    Nested<Category> n;
    // The inner question deletes the entry; the outer one finds it gone and says so.
    n.deleteDuring(question, [&] { PageFixture::press(n.page, 103); }, {IDOK, IDOK, IDOK, IDOK});
    CHECK_FALSE(n.stands(L"b"));
    CHECK(n.desktop.messageBoxes.at(3).text.find(L"Access denied. ") == 0);
    CHECK(n.list.count() == 1);
    Nested<Category> under;
    // Under the result the row still stands: the second question is about the same entry.
    under.deleteDuring(result, [&] { PageFixture::press(under.page, 103); }, {IDOK, IDCANCEL, IDOK});
    CHECK_FALSE(under.stands(L"b"));
    CHECK(under.list.count() == 1);
}

TEST_CASE_TEMPLATE("the end of the session under each box is agreed to and changes nothing by itself",
                   Category, startup::ucRun, startup::ucWinlogon, startup::ucOther) {
    for (Box box : {question, result}) {
        Nested<Category> n;
        n.deleteDuring(
            box,
            [&] {
                for (HWND window : {n.parent.handle(), n.page.handle()}) {
                    CHECK(::SendMessageW(window, WM_QUERYENDSESSION, 0, 0) != 0);
                    ::SendMessageW(window, WM_ENDSESSION, TRUE, 0);
                }
            },
            box == question ? std::deque<int>{IDCANCEL} : std::deque<int>{IDOK, IDOK});
        CHECK(n.stands(L"b") == (box == question));
    }
}

TEST_CASE_TEMPLATE("under the pop-up menu: a second click, the button, the end of the session", Category,
                   startup::ucRun, startup::ucWinlogon, startup::ucServices) {
    Nested<Category> n;
    const bool deletes = !std::is_same_v<Category, startup::ucServices>;
    int depth = 0;
    n.desktop.whileOpen = [&](const std::wstring& text) {
        if (!text.empty() || ++depth > 1) return;
        n.rightClick();
        CHECK(::SendMessageW(n.page.handle(), WM_QUERYENDSESSION, 0, 0) != 0);
        // Deletes the entry, and so refills the list, or tells that its file is missing.
        PageFixture::press(n.page, 103);
    };
    // The inner menu is left, the outer one answered with Delete: of the row that was under it nothing is
    // known any more.
    n.desktop.popUpAnswers = {0, 1};
    n.desktop.messageBoxAnswers = deletes ? std::deque<int>{IDOK, IDOK} : std::deque<int>{IDOK, IDOK};
    n.rightClick();
    CHECK(depth == 2);
    CHECK(n.stands(L"c"));
    CHECK(n.list.count() == (deletes ? 1 : 2));
}

TEST_CASE_TEMPLATE("closing under the box of a missing file", Category, startup::ucRun, startup::ucServices) {
    Nested<Category> n;
    n.desktop.whileOpen = [&](const std::wstring& text) {
        if (text.find(L"not found") != std::wstring::npos) ::DestroyWindow(n.parent.handle());
    };
    n.desktop.popUpAnswers = {2};
    n.desktop.messageBoxAnswers = {IDOK};
    n.rightClick();
    CHECK(n.log.lines.empty());
}
