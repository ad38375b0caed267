// What the program carries with it: its string table and pictures.
#pragma once

#include <string>

#include "win32/base/handle.h"

namespace win32 {

// Entry `number` of the program's string table, empty when there is none.
std::wstring loadString(int number);

OwnedBitmap loadBitmap(int resource);

struct ImageListTraits : NullIsNone<HIMAGELIST> {
    static void close(HIMAGELIST images) { ::ImageList_Destroy(images); }
};
using OwnedImageList = Owned<ImageListTraits>;

// A strip of pictures from a bitmap resource, `width` pixels each at 96 pixels per inch and as much larger as
// the resolution is; the mask colour is transparent.
OwnedImageList loadImages(int resource, int width, COLORREF mask, int dpi);

}  // namespace win32
