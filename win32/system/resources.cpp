#include "win32/system/resources.h"

#include "win32/base/flavour.h"
#include "win32/base/structure_size.h"
#include "win32/system/canvas.h"

namespace win32 {

std::wstring loadString(int number) {
    return withFlavour([&]<class F>(F f) {
        TextBuffer<F> buffer(4096);  // the most that an entry can hold
        int length = f.loadString(::GetModuleHandleA(nullptr), number, buffer.data(),
                                  static_cast<int>(buffer.capacity()));
        return buffer.text(length);
    });
}

OwnedBitmap loadBitmap(int resource) {
    return OwnedBitmap(withFlavour([&](auto f) {
        return static_cast<HBITMAP>(f.loadImage(::GetModuleHandleA(nullptr), f.resource(resource),
                                                IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
    }));
}

namespace {

BITMAP sizeOf(const OwnedBitmap& bitmap) {
    BITMAP size = {};
    ::GetObjectA(bitmap.get(), sizeof size, &size);
    return size;
}

// Whole pixels only: colours in between would not be the mask's.
OwnedBitmap stretched(const OwnedBitmap& bitmap, int width, int height) {
    BITMAPINFO format = {};
    format.bmiHeader.biSize = structureSize<BITMAPINFOHEADER>();
    format.bmiHeader.biWidth = width;
    format.bmiHeader.biHeight = height;
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 24;
    void* pixels = nullptr;
    OwnedBitmap result(::CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &pixels, nullptr, 0));
    const BITMAP size = sizeOf(bitmap);
    Canvas source(bitmap.get()), target(result.get());
    ::SetStretchBltMode(target.context(), COLORONCOLOR);
    ::StretchBlt(target.context(), 0, 0, width, height, source.context(), 0, 0, size.bmWidth, size.bmHeight,
                 SRCCOPY);
    return result;
}

}  // namespace

OwnedImageList loadImages(int resource, int width, COLORREF mask, int dpi) {
    OwnedBitmap strip = loadBitmap(resource);
    const BITMAP size = sizeOf(strip);
    const int count = size.bmWidth / width;
    const int shownWidth = ::MulDiv(width, dpi, 96), shownHeight = ::MulDiv(size.bmHeight, dpi, 96);
    if (shownWidth != width) strip = stretched(strip, count * shownWidth, shownHeight);
    OwnedImageList images(::ImageList_Create(shownWidth, shownHeight, ILC_COLOR8 | ILC_MASK, count, 0));
    ::ImageList_AddMasked(images.get(), strip.get(), mask);
    return images;
}

}  // namespace win32
