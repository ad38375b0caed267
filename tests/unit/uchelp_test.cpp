// The help page: its text, and how its label follows the page's size.
#include <doctest/doctest.h>

#include "resources/resource_ids.h"
#include "support/ucHelp.h"
#include "tests/support/page_fixture.h"
#include "win32/system/resources.h"

namespace {

using Size = std::pair<int, int>;

struct Help : HiddenWindow {
    const TwipResolution twips{handle()};
    RecordingLogger log;
    support::ucHelp page{handle()};
    HWND label = ::GetDlgItem(page.handle(), 101);

    std::vector<int> place(HWND window) const { return placeIn(page.handle(), window); }
    void resize(int width, int height) {
        ::SetWindowPos(page.handle(), nullptr, 0, 0, width, height, SWP_NOZORDER | SWP_NOMOVE);
    }
    Size labelSize() const { return {place(label)[2], place(label)[3]}; }
};

}  // namespace

TEST_CASE_FIXTURE(Help, "the label shows the description once the page has its logger") {
    CHECK(win32::windowText(label).empty());
    helmkit::Logger logger = log.logger();
    page.Init(logger);
    CHECK(win32::windowText(label) == win32::loadString(STRING_DESCRIPTION));
    CHECK(log.lines.empty());
    CHECK(logger.object() == &log);
}

TEST_CASE_FIXTURE(Help,
                  "the label is as wide as the page less 1.2 times its left, as high as it less its top") {
    resize(6000, 3000);
    HWND picture = ::FindWindowExW(page.handle(), nullptr, L"QuillonPicture", nullptr);
    for (const auto& [width, height] : {Size{6000, 3000}, {9001, 1501}, {3000, 6000}, {1801, 241}}) {
        CAPTURE(width);
        resize(width, height);
        CHECK(place(label) == std::vector<int>{1500, 240, width - 1800, height - 240});
        CHECK(place(picture) == std::vector<int>{240, 240, 960, 960});
    }
}

TEST_CASE_FIXTURE(Help, "the label is a text without access keys, and has no size before there is room") {
    CHECK(win32::windowText(page.handle()) == L"ucHelp1");
    const LONG style = WS_CHILD | WS_VISIBLE | SS_NOPREFIX;
    CHECK((::GetWindowLongW(label, GWL_STYLE) & style) == style);
    CHECK(::GetWindowLongW(label, GWL_EXSTYLE) == 0);
    resize(300, 100);
    CHECK(labelSize() == Size{0, 0});
}

TEST_CASE_FIXTURE(Help, "a narrow or a short page leaves the label nothing, and never less") {
    resize(6000, 3000);
    resize(1800, 3000);
    CHECK(labelSize() == Size{0, 2760});
    resize(300, 1500);
    CHECK(labelSize() == Size{0, 1260});
    resize(6000, 240);
    CHECK(labelSize() == Size{4200, 0});
    resize(6000, 30);
    CHECK(labelSize() == Size{4200, 0});
    // What cannot be is not applied, and the other measure is.
    resize(6000, 3000);
    resize(300, 1500);
    CHECK(labelSize() == Size{4200, 1260});
}
