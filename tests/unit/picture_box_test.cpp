// A picture as it is painted: which of its sizes, blended with what is behind it, and nothing left over.
#include "win32/windows/picture_box.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <vector>

#include "resources/resource_ids.h"
#include "tests/support/replaced_import.h"
#include "win32/system/canvas.h"
#include "win32/system/resources.h"
#include "win32/windows/window.h"

namespace {

const COLORREF background = RGB(10, 200, 30);

// Tells the colour behind its controls.
class Parent : public win32::Window {
  public:
    Parent() { create(L"QuillonPictureParent", {}, WS_POPUP, 0, nullptr, nullptr); }
    HWND asked = nullptr;

  protected:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message != WM_CTLCOLORSTATIC) return Window::onMessage(message, wParam, lParam);
        ::SetBkColor(reinterpret_cast<HDC>(wParam), background);
        asked = reinterpret_cast<HWND>(lParam);
        return 1;
    }
};

// A bitmap of 32 bits a pixel with a context to draw into it.
struct Canvas {
    const int size;
    BYTE* bytes = nullptr;
    HDC context = ::CreateCompatibleDC(nullptr);
    win32::OwnedBitmap bitmap;
    HGDIOBJ before;

    explicit Canvas(int size) : size(size) {
        BITMAPINFO format = {};
        format.bmiHeader = {sizeof format.bmiHeader, size, -size, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        bitmap = win32::OwnedBitmap(::CreateDIBSection(nullptr, &format, DIB_RGB_COLORS,
                                                       reinterpret_cast<void**>(&bytes), nullptr, 0));
        before = ::SelectObject(context, bitmap.get());
    }
    ~Canvas() {
        ::SelectObject(context, before);
        ::DeleteDC(context);
    }
};

HDC deleted = nullptr;
HGDIOBJ bitmapOfDeleted = nullptr;
decltype(&::DeleteDC) realDeleteDC;
BOOL WINAPI deleteContext(HDC context) {
    deleted = context;
    bitmapOfDeleted = ::GetCurrentObject(context, OBJ_BITMAP);
    return realDeleteDC(context);
}

HDC target = nullptr;
bool isEnded = false;
HDC WINAPI beginPaint(HWND, PAINTSTRUCT* painting) {
    *painting = {};
    return painting->hdc = target;
}
BOOL WINAPI endPaint(HWND, const PAINTSTRUCT* painting) {
    isEnded = painting->hdc == target;
    return TRUE;
}

int mode = 0;
std::vector<int> origin, stretched;
int WINAPI stretchMode(HDC context, int given) {
    CHECK(context == target);
    return mode = given;
}
BOOL WINAPI brushOrigin(HDC context, int x, int y, POINT* before) {
    CHECK(context == target);
    CHECK(before == nullptr);
    origin = {x, y};
    return TRUE;
}
BOOL(WINAPI* realStretch)(HDC, int, int, int, int, HDC, int, int, int, int, DWORD);
BOOL WINAPI stretch(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY,
                    int fromWidth, int fromHeight, DWORD how) {
    stretched = {x, y, width, height, fromX, fromY, fromWidth, fromHeight, how == SRCCOPY};
    return realStretch(to, x, y, width, height, from, fromX, fromY, fromWidth, fromHeight, how);
}

struct Painting {
    Parent parent;
    win32::PictureBox picture{parent.handle(), RESOURCE_HELP_PICTURE};
    ReplacedImport calls[5] = {{"BeginPaint", &beginPaint},
                               {"EndPaint", &endPaint},
                               {"SetStretchBltMode", &stretchMode},
                               {"SetBrushOrgEx", &brushOrigin},
                               {"StretchBlt", &stretch, realStretch}};

    void paint(const Canvas& canvas) {
        target = canvas.context;
        isEnded = false;
        stretched.clear();
        ::MoveWindow(picture.handle(), 0, 0, canvas.size, canvas.size, FALSE);
        CHECK(::SendMessageW(picture.handle(), WM_PAINT, 0, 0) == 0);
        CHECK(isEnded);
    }
};

// How many drawing objects there are: by how far their table reaches when all its gaps are filled.
size_t drawingObjects() {
    const size_t many = 500;
    std::vector<HBRUSH> brushes;
    size_t furthest = 0;
    for (size_t i = 0; i < many; ++i) {
        brushes.push_back(::CreateSolidBrush(static_cast<COLORREF>(i)));
        furthest = std::max<size_t>(furthest, LOWORD(reinterpret_cast<ULONG_PTR>(brushes.back())));
    }
    for (HBRUSH brush : brushes) ::DeleteObject(brush);
    return furthest;
}

}  // namespace

TEST_CASE_FIXTURE(Painting, "each pixel of a picture is laid over the colour behind it by its own alpha") {
    for (int i = 0; i < 3; ++i) {
        const win32::OwnedBitmap resource = win32::loadBitmap(RESOURCE_HELP_PICTURE + i);
        BITMAP told = {};
        REQUIRE(::GetObjectW(resource.get(), sizeof told, &told) > 0);
        REQUIRE(told.bmWidth == told.bmHeight);
        REQUIRE(told.bmBitsPixel == 32);
        const int size = told.bmWidth;
        const Canvas canvas(size);
        paint(canvas);
        CHECK((stretched == std::vector<int>{0, 0, size, size, 0, 0, size, size, 1}));
        CHECK(mode == HALFTONE);
        CHECK((origin == std::vector<int>{0, 0}));
        CHECK(parent.asked == picture.handle());
        const int behind[] = {GetBValue(background), GetGValue(background), GetRValue(background)};
        int wrong = 0, clear = 0, mixed = 0;
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x) {
                // A resource stands upside down.
                const BYTE* from = static_cast<BYTE*>(told.bmBits) + 4 * (size * (size - 1 - y) + x);
                const BYTE* shown = canvas.bytes + 4 * (size * y + x);
                clear += from[3] == 0;
                mixed += from[3] != 0 && from[3] != 255;
                for (int c = 0; c < 3; ++c)
                    wrong += shown[c] != BYTE(from[c] + behind[c] * (255 - from[3]) / 255);
            }
        }
        CHECK(wrong == 0);
        CHECK(clear > 0);
        CHECK(mixed > 0);
    }
}

TEST_CASE_FIXTURE(Painting, "the smallest picture that is not smaller than the window is drawn") {
    std::vector<int> widths;
    for (int i = 0; i < 3; ++i) {
        BITMAP told = {};
        ::GetObjectW(win32::loadBitmap(RESOURCE_HELP_PICTURE + i).get(), sizeof told, &told);
        widths.push_back(told.bmWidth);
    }
    const std::pair<int, int> rows[] = {
        {1, 0},         {widths[0], 0},    {widths[0] + 1, 1}, {widths[1], 1}, {widths[1] + 1, 2},
        {widths[2], 2}, {widths[2] + 9, 2}};
    for (const auto& [size, picture] : rows) {
        const Canvas canvas(size);
        paint(canvas);
        const int width = widths[picture];
        CHECK((stretched == std::vector<int>{0, 0, size, size, 0, 0, width, width, 1}));
    }
}

TEST_CASE_FIXTURE(Painting, "painting leaves no drawing object behind") {
    const Canvas canvas(64);
    paint(canvas);
    const size_t before = drawingObjects();
    for (int i = 0; i < 5; ++i) paint(canvas);
    CHECK(drawingObjects() == before);
}

TEST_CASE("pictures of rows leave no drawing object behind") {
    const auto load = [](int dpi) { win32::loadImages(RESOURCE_STATE_IMAGES, 16, RGB(192, 192, 192), dpi); };
    for (int dpi : {96, 144}) load(dpi);
    const size_t before = drawingObjects();
    for (int i = 0; i < 5; ++i) load(144);
    CHECK(drawingObjects() == before);
}

TEST_CASE_FIXTURE(Painting, "a double-click does what it is to do, and nothing where it is to do nothing") {
    CHECK(::SendMessageW(picture.handle(), WM_LBUTTONDBLCLK, 0, 0) == 0);
    int clicks = 0;
    picture.onDoubleClick([&] { ++clicks; });
    CHECK(::SendMessageW(picture.handle(), WM_LBUTTONDBLCLK, 0, 0) == 0);
    CHECK(clicks == 1);
}

TEST_CASE("a canvas draws into its bitmap, gives it back and deletes its context") {
    const ReplacedImport call("DeleteDC", &deleteContext, realDeleteDC);
    const win32::OwnedBitmap bitmap(::CreateBitmap(8, 8, 1, 32, nullptr));
    HDC context = nullptr;
    {
        const win32::Canvas canvas(bitmap.get());
        context = canvas.context();
        CHECK(::GetCurrentObject(context, OBJ_BITMAP) == bitmap.get());
    }
    CHECK(deleted == context);
    CHECK(bitmapOfDeleted != bitmap.get());
}
