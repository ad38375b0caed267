#include "win32/resources.h"

#include "win32/flavour.h"

namespace win32 {

std::wstring loadString(int number) {
    return withFlavour([&](auto f) {
        TextBuffer<decltype(f)> buffer(4096);  // the most that an entry can hold
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

OwnedImageList loadImages(int resource, int width, COLORREF mask) {
    OwnedBitmap strip = loadBitmap(resource);
    BITMAP size = {};
    ::GetObjectA(strip.get(), sizeof size, &size);
    OwnedImageList images(
        ::ImageList_Create(width, size.bmHeight, ILC_COLOR8 | ILC_MASK, size.bmWidth / width, 0));
    ::ImageList_AddMasked(images.get(), strip.get(), mask);
    return images;
}

}  // namespace win32
