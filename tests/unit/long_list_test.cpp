// Lists as long as nobody has them.
#include <doctest/doctest.h>

#include "helmkit/client/logger.h"
#include "startup/ucRun.h"
#include "tests/support/page_fixture.h"

TEST_CASE_FIXTURE(HiddenWindow,
                  "a list of 40,000 rows keeps every row's text, image and data, and scrolls to the last") {
    const int rows = 40000;
    win32::ListView list;
    list.create(handle(), 1);
    ::MoveWindow(list.window(), 0, 0, 380, 200, FALSE);
    for (int column : {0, 1}) list.addColumn(column, L"column");
    {
        win32::DrawingOff drawingOff(list);
        list.reserve(rows);
        for (int row = 0; row < rows; ++row) {
            list.setText(list.addRow(L"row " + std::to_wstring(row), row % 3, rows - row), 1,
                         std::to_wstring(-row));
        }
    }
    REQUIRE(list.count() == rows);
    for (int row : {0, 1, 32767, 32768, rows - 1}) {
        CAPTURE(row);
        CHECK(list.text(row, 0) == L"row " + std::to_wstring(row));
        CHECK(list.text(row, 1) == std::to_wstring(-row));
        CHECK(list.image(row) == row % 3);
        CHECK(list.tag(row) == rows - row);
        list.select(row);
        CHECK(list.selected() == row);
    }
    const int top = static_cast<int>(::SendMessageW(list.window(), LVM_GETTOPINDEX, 0, 0));
    const int perPage = static_cast<int>(::SendMessageW(list.window(), LVM_GETCOUNTPERPAGE, 0, 0));
    CHECK(top + perPage >= rows);
    list.clear();
    CHECK(list.count() == 0);
    CHECK(list.selected() == win32::ListView::none);
}

TEST_CASE_FIXTURE(PageFixture,
                  "a page of 3,000 entries is filled, walked to its end, and loses the last one") {
    const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
    const int entries = 3000;
    for (int i = 0; i < entries; ++i) {
        registry.setString(HKEY_LOCAL_MACHINE, run, L"entry " + std::to_wstring(10000 + i),
                           L"C:\\nowhere\\x.exe");
    }
    PageOf<startup::ucRun> page(parent.handle());
    ::SetWindowPos(page.handle(), nullptr, 0, 0, 400, 260, SWP_NOZORDER);
    helmkit::Logger logger = log.logger();
    const DWORD start = ::GetTickCount();
    page.Init(logger);
    MESSAGE("3000 entries listed in ms: " << ::GetTickCount() - start);
    win32::ListView& list = page.ListViewObject();
    REQUIRE(list.count() == entries);
    ::SendMessageW(list.window(), WM_KEYDOWN, VK_END, 0);
    CHECK(list.selected() == entries - 1);
    CHECK(list.text(entries - 1, 0) == L"entry 12999");
    desktop.messageBoxAnswers = {IDOK, IDOK};
    press(page, 103);
    CHECK(list.count() == entries - 1);
    CHECK_FALSE(registry.hasValue(HKEY_LOCAL_MACHINE, run, L"entry 12999"));
    CHECK(registry.valueCount(HKEY_LOCAL_MACHINE, run) == entries - 1);
}
