#include "win32/windows/picture_box.h"

#include "win32/system/canvas.h"
#include "win32/system/resources.h"

namespace win32 {

namespace {

const int sizes = 3;

struct Picture {
    OwnedBitmap bitmap;
    int width = 0, height = 0;
    BYTE* bytes = nullptr;  // blue, green, red and alpha of each pixel; belongs to the bitmap
};

Picture load(int resource) {
    Picture picture;
    picture.bitmap = loadBitmap(resource);
    BITMAP size = {};
    ::GetObjectA(picture.bitmap.get(), sizeof size, &size);
    picture.width = size.bmWidth;
    picture.height = size.bmHeight;
    if (size.bmBitsPixel == 32) picture.bytes = static_cast<BYTE*>(size.bmBits);
    return picture;
}

// Windows 98 has no blending of its own that every display driver honours.
void blendWith(COLORREF background, Picture& picture) {
    const BYTE behind[] = {GetBValue(background), GetGValue(background), GetRValue(background)};
    const int pixels = picture.bytes ? picture.width * picture.height : 0;
    for (int i = 0; i < pixels; ++i) {
        BYTE* pixel = picture.bytes + 4 * i;
        const int through = 255 - pixel[3];
        for (int c = 0; c < 3; ++c) pixel[c] = static_cast<BYTE>(pixel[c] + behind[c] * through / 255);
    }
}

}  // namespace

PictureBox::PictureBox(HWND parent, int firstResource) : firstResource_(firstResource) {
    create(L"QuillonPicture", {}, WS_CHILD | WS_VISIBLE, 0, parent, nullptr);
}

void PictureBox::paint() const {
    PAINTSTRUCT painting;
    HDC target = ::BeginPaint(handle(), &painting);
    RECT client;
    ::GetClientRect(handle(), &client);
    Picture picture;
    for (int i = 0; i < sizes && picture.width < client.right; ++i) picture = load(firstResource_ + i);
    send(::GetParent(handle()), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(target),
         reinterpret_cast<LPARAM>(handle()));
    blendWith(::GetBkColor(target), picture);
    const Canvas source(picture.bitmap.get());
    ::SetStretchBltMode(target, HALFTONE);
    ::SetBrushOrgEx(target, 0, 0, nullptr);  // HALFTONE asks for it
    ::StretchBlt(target, 0, 0, client.right, client.bottom, source.context(), 0, 0, picture.width,
                 picture.height, SRCCOPY);
    ::EndPaint(handle(), &painting);
}

LRESULT PictureBox::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            paint();
            return 0;
        case WM_SIZE:
            // What is kept of the smaller or larger picture would stay beside the new one.
            ::InvalidateRect(handle(), nullptr, TRUE);
            return 0;
        case WM_LBUTTONDBLCLK:
            if (doubleClick_) doubleClick_();
            return 0;
    }
    return Window::onMessage(message, wParam, lParam);
}

}  // namespace win32
