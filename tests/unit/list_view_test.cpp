#include <doctest/doctest.h>

#include "tests/support/page_fixture.h"

TEST_CASE("the hour-glass is shown while something works, and then what was before") {
    HCURSOR hand = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32649)),
            hourGlass = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32514));
    HCURSOR before = ::SetCursor(hand);
    {
        const win32::WaitCursor waiting;
        CHECK(::GetCursor() == hourGlass);
    }
    CHECK(::GetCursor() == hand);
    ::SetCursor(before);
}

TEST_CASE_FIXTURE(HiddenWindow, "a list whose window has gone has no rows and no selection") {
    win32::ListView list;
    list.create(handle(), 1);
    list.addColumn(0, L"column");
    CHECK(list.addRow(L"row", 2, 7) == 0);
    list.select(0);
    CHECK(list.selected() == 0);
    CHECK(list.tag(0) == 7);
    CHECK(list.tag(1) == win32::ListView::none);
    ::DestroyWindow(list.window());
    CHECK(list.selected() == win32::ListView::none);
    CHECK(list.count() == 0);
    CHECK(list.text(0, 0) == L"");
    CHECK(list.image(0) == win32::ListView::none);
    CHECK(list.tag(0) == win32::ListView::none);
    CHECK_NOTHROW(list.select(0));
    CHECK_NOTHROW(list.clear());
    CHECK_THROWS_AS(list.addRow(L"row", 0, 0), win32::Error);
}
