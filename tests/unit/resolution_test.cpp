// The main window on its way between monitors of different resolution.
#include <doctest/doctest.h>

#include <cstdlib>

#include "app/FAbout.h"
#include "app/FMain.h"
#include "resources/resource_ids.h"
#include "tests/support/page_fixture.h"
#include "tests/support/started_window.h"
#include "win32/system/resources.h"

namespace {

const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const wchar_t* const pageNames[] = {L"ucHelp1", L"ucRun1", L"ucWinlogon1", L"ucOther1", L"ucServices1"};
const wchar_t* const listPages[] = {L"ucRun1", L"ucWinlogon1", L"ucOther1", L"ucServices1"};

bool operator==(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

RECT onScreen(HWND window) {
    RECT place;
    ::GetWindowRect(window, &place);
    return place;
}

RECT inParent(HWND window) {
    RECT place = onScreen(window);
    ::MapWindowPoints(nullptr, ::GetParent(window), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

std::vector<HWND> childrenOf(HWND parent) {
    std::vector<HWND> children;
    for (HWND child = ::GetWindow(parent, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
        children.push_back(child);
    }
    return children;
}

int fontHeight(HWND window) {
    LOGFONTW font = {};
    ::GetObjectW(reinterpret_cast<HFONT>(::SendMessageW(window, WM_GETFONT, 0, 0)), sizeof font, &font);
    return static_cast<int>(font.lfHeight);
}

struct Moving : PageFixture {
    app::FMain window;

    Moving() {
        registry.setString(HKEY_LOCAL_MACHINE, run, L"a", L"C:\\nowhere\\a.exe");
        startWindow(window, desktop);
        // At twice the size it still has to fit on the screen; much narrower, note and button would meet.
        ::SetWindowPos(window.handle(), nullptr, 10, 10, 530, 340, SWP_NOZORDER);
        REQUIRE(win32::dpiOf(window.handle()) == 96);
    }
    void tell(int dpi, RECT place) {
        ::SendMessageW(window.handle(), 0x02E0, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
    }
    RECT twiceAsLarge() const {
        const RECT place = onScreen(window.handle());
        return {place.left, place.top, 2 * place.right - place.left, 2 * place.bottom - place.top};
    }
    HWND child(const wchar_t* name) { return ::FindWindowExW(window.handle(), nullptr, nullptr, name); }
    HWND list(const wchar_t* page) { return ::GetDlgItem(child(page), 101); }

    // Every window inside the main window with its place, and what its list shows.
    std::vector<int> everything() {
        std::vector<int> numbers;
        std::vector<HWND> rest = childrenOf(window.handle());
        while (!rest.empty()) {
            HWND next = rest.back();
            rest.pop_back();
            const RECT place = inParent(next);
            for (LONG side : {place.left, place.top, place.right, place.bottom}) numbers.push_back(int(side));
            numbers.push_back(fontHeight(next));
            for (HWND below : childrenOf(next)) rest.push_back(below);
        }
        for (const wchar_t* page : listPages) {
            for (int column : {0, 1}) numbers.push_back(columnWidth(page, column));
            numbers.push_back(imageSize(page));
        }
        return numbers;
    }
    SIZE tabSize() {
        RECT tab = {};
        ::SendMessageW(::GetDlgItem(window.handle(), 200), TCM_GETITEMRECT, 1,
                       reinterpret_cast<LPARAM>(&tab));
        return {tab.right - tab.left, tab.bottom - tab.top};
    }
    int columnWidth(const wchar_t* page, int column) {
        return static_cast<int>(::SendMessageW(list(page), LVM_GETCOLUMNWIDTH, column, 0));
    }
    int imageSize(const wchar_t* page) {
        auto images =
            reinterpret_cast<HIMAGELIST>(::SendMessageW(list(page), LVM_GETIMAGELIST, LVSIL_SMALL, 0));
        int width = 0, height = 0;
        ::ImageList_GetIconSize(images, &width, &height);
        CHECK(width == height);
        return width;
    }
    void checkTidy() {
        RECT client;
        ::GetClientRect(window.handle(), &client);
        for (HWND control : childrenOf(window.handle())) {
            RECT place = inParent(control);
            // The footer keeps its design width, which a narrow window cuts.
            if (control == ::GetDlgItem(window.handle(), 201)) place.right = client.right;
            checkInside(place, client);
        }
        for (const wchar_t* page : pageNames) {
            ::GetClientRect(child(page), &client);
            const std::vector<HWND> controls = childrenOf(child(page));
            CHECK_FALSE(controls.empty());
            for (size_t i = 0; i < controls.size(); ++i) {
                for (size_t j = 0; j < i; ++j) {
                    RECT common;
                    const RECT a = inParent(controls[i]), b = inParent(controls[j]);
                    CHECK_FALSE(::IntersectRect(&common, &a, &b));
                }
            }
            for (HWND control : controls) checkInside(inParent(control), client);
        }
    }
    static void checkInside(const RECT& place, const RECT& client) {
        CHECK(place.left >= 0);
        CHECK(place.top >= 0);
        CHECK(place.right <= client.right);
        CHECK(place.bottom <= client.bottom);
    }
    // The layout rules of the main window and of a page, at a resolution.
    void checkLayout(int dpi) {
        auto pixels = [&](int twips) { return win32::toPixels(twips, dpi); };
        RECT client;
        ::GetClientRect(window.handle(), &client);
        const int w = win32::toTwips(client.right, dpi), h = win32::toTwips(client.bottom, dpi);
        for (const wchar_t* name : pageNames) {
            const RECT place = inParent(child(name));
            CHECK(place.left == pixels(285));
            CHECK(place.top == pixels(435));
            CHECK(place.right - place.left == pixels(w - 150 - 435));
            CHECK(place.bottom - place.top == pixels(h - 975));
        }
        checkColumns(dpi);
        const RECT button = inParent(::GetDlgItem(child(L"ucRun1"), 103));
        CHECK(button.right - button.left == pixels(1995));
        CHECK(button.bottom - button.top == pixels(375));
        const RECT picture =
            inParent(::FindWindowExW(child(L"ucHelp1"), nullptr, L"QuillonPicture", nullptr));
        CHECK(picture.right - picture.left == pixels(960));
    }
    void checkColumns(int dpi) {
        RECT page;
        ::GetClientRect(child(L"ucRun1"), &page);
        const int width = win32::toPixels((win32::toTwips(page.right, dpi) - 120 - 255) / 2, dpi);
        for (int column : {0, 1}) CHECK(columnWidth(L"ucRun1", column) == width);
    }
};

}  // namespace

TEST_CASE_FIXTURE(Moving, "from 96 to 192 pixels per inch everything doubles, and back it is as it was") {
    const std::vector<int> before = everything();
    const RECT place = onScreen(window.handle()), larger = twiceAsLarge();
    const int height = fontHeight(list(L"ucRun1"));
    const SIZE tab = tabSize();
    checkTidy();
    checkLayout(96);
    CHECK(imageSize(L"ucRun1") == 16);

    tell(192, larger);
    CHECK(onScreen(window.handle()) == larger);
    CHECK(win32::dpiOf(list(L"ucServices1")) == 192);
    checkTidy();
    checkLayout(192);
    for (const wchar_t* page : listPages) CHECK(imageSize(page) == 32);
    CHECK(fontHeight(list(L"ucRun1")) == 2 * height);
    CHECK(fontHeight(::GetDlgItem(window.handle(), 200)) == 2 * height);
    CHECK(fontHeight(::GetDlgItem(window.handle(), 201)) == 2 * height);
    // The room around a tab's text grows with the text, whose letters are not all just twice as wide.
    CHECK(std::abs(tabSize().cx - 2 * tab.cx) <= 8);
    CHECK(std::abs(tabSize().cy - 2 * tab.cy) <= 4);
    CHECK(::SendMessageW(list(L"ucRun1"), LVM_GETITEMCOUNT, 0, 0) == 1);

    tell(96, place);
    CHECK(onScreen(window.handle()) == place);
    CHECK(everything() == before);
}

TEST_CASE_FIXTURE(Moving,
                  "a page that keeps its size in pixels is laid out for the new resolution all the same") {
    const RECT page = inParent(child(L"ucRun1"));
    RECT place = onScreen(window.handle());
    // What the margins around a page take more, in pixels: 585 and 975 twips.
    place.right += 39;
    place.bottom += 65;
    tell(192, place);
    const RECT after = inParent(child(L"ucRun1"));
    REQUIRE(after.right - after.left == page.right - page.left);
    REQUIRE(after.bottom - after.top == page.bottom - page.top);
    checkColumns(192);
    CHECK(imageSize(L"ucRun1") == 32);
}

TEST_CASE_FIXTURE(Moving, "a resolution between two whole ones is followed, too") {
    const RECT place = onScreen(window.handle());
    tell(144, {place.left, place.top, place.left + 795, place.top + 510});
    checkTidy();
    checkLayout(144);
    CHECK(imageSize(L"ucRun1") == 24);
    ::SetWindowPos(window.handle(), nullptr, 0, 0, 860, 560, SWP_NOMOVE | SWP_NOZORDER);
    checkLayout(144);
}

TEST_CASE_FIXTURE(Moving,
                  "at 380 by 260 pixels nothing is cut off, but the note beside the custom page's button") {
    ::SetWindowPos(window.handle(), nullptr, 10, 10, 380, 260, SWP_NOZORDER);
    for (const wchar_t* page : listPages) {
        CAPTURE(std::wstring(page));
        RECT client, list = inParent(this->list(page));
        ::GetClientRect(child(page), &client);
        const RECT button = inParent(::GetDlgItem(child(page), 103));
        checkInside(list, client);
        checkInside(button, client);
        // The heading of the list and two rows remain.
        CHECK(list.bottom - list.top > 60);
        CHECK(list.bottom <= button.top);
        if (HWND box = ::GetDlgItem(child(page), 102)) {
            checkInside(inParent(box), client);
            CHECK(inParent(box).bottom <= button.top);
            CHECK(list.bottom <= inParent(box).top);
        }
    }
}

TEST_CASE("a row image is as wide as asked and as high as its strip") {
    for (int dpi : {96, 192}) {
        auto images = win32::loadImages(RESOURCE_STATE_IMAGES, 8, RGB(192, 192, 192), dpi);
        int width = 0, height = 0;
        REQUIRE(::ImageList_GetIconSize(images.get(), &width, &height));
        CHECK(width == 8 * dpi / 96);
        CHECK(height == 16 * dpi / 96);
        CHECK(::ImageList_GetImageCount(images.get()) == 6);
    }
}

TEST_CASE("row images grow with the resolution and stay transparent around the circle") {
    const COLORREF background = RGB(10, 200, 30);
    for (int dpi : {96, 120, 144, 192}) {
        CAPTURE(dpi);
        auto images = win32::loadImages(RESOURCE_STATE_IMAGES, 16, RGB(192, 192, 192), dpi);
        REQUIRE(::ImageList_GetImageCount(images.get()) == 3);
        const int size = 16 * dpi / 96;
        HDC screen = ::GetDC(nullptr), canvas = ::CreateCompatibleDC(screen);
        win32::OwnedBitmap bitmap(::CreateCompatibleBitmap(screen, size, size));
        HGDIOBJ before = ::SelectObject(canvas, bitmap.get());
        for (int image = 0; image < 3; ++image) {
            HBRUSH brush = ::CreateSolidBrush(background);
            RECT all = {0, 0, size, size};
            ::FillRect(canvas, &all, brush);
            ::DeleteObject(brush);
            ::ImageList_Draw(images.get(), image, canvas, 0, 0, ILD_NORMAL);
            for (int x : {0, size - 1}) {
                for (int y : {0, size - 1}) CHECK(::GetPixel(canvas, x, y) == background);
            }
            CHECK(::GetPixel(canvas, size / 2, size / 2) != background);
        }
        ::SelectObject(canvas, before);
        ::DeleteDC(canvas);
        ::ReleaseDC(nullptr, screen);
    }
}

TEST_CASE_FIXTURE(HiddenWindow, "a picture that changes its size is drawn anew as a whole") {
    ::ShowWindow(handle(), SW_SHOW);
    win32::PictureBox picture(handle(), RESOURCE_HELP_PICTURE);
    ::MoveWindow(picture.handle(), 0, 0, 64, 64, TRUE);
    for (int size : {128, 64}) {
        ::ValidateRect(picture.handle(), nullptr);
        ::MoveWindow(picture.handle(), 0, 0, size, size, TRUE);
        RECT invalid = {}, all = {0, 0, size, size};
        ::GetUpdateRect(picture.handle(), &invalid, FALSE);
        CHECK(invalid == all);
    }
    ::ValidateRect(picture.handle(), nullptr);
}

TEST_CASE_FIXTURE(HiddenWindow, "the about box follows the monitor that it is moved to") {
    app::FAbout about(handle(), [] {});
    const RECT before = onScreen(about.handle());
    RECT place = {30, 40, 30 + 2 * (before.right - before.left), 40 + 2 * (before.bottom - before.top)};
    RECT client, larger;
    ::GetClientRect(about.handle(), &client);
    ::SendMessageW(about.handle(), 0x02E0, MAKEWPARAM(192, 192), reinterpret_cast<LPARAM>(&place));
    ::GetClientRect(about.handle(), &larger);
    CHECK(larger.right == 2 * client.right);
    CHECK(larger.bottom == 2 * client.bottom);
    CHECK(onScreen(about.handle()).left == 30);
    CHECK(onScreen(about.handle()).top == 40);
    for (HWND control : childrenOf(about.handle())) {
        CHECK(inParent(control).right <= larger.right);
        CHECK(inParent(control).bottom <= larger.bottom);
    }
    RECT button = inParent(::GetDlgItem(about.handle(), IDOK));
    CHECK(button.right - button.left == win32::toPixels(1335, 192));
}
