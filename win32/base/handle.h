// Owners of Windows handles: what is opened is closed once, when its owner goes.
#pragma once

#include <utility>

#include "win32/base/platform.h"

namespace win32 {

// `Traits` gives the handle's type, its closing function and the value that stands for none.
template <class Traits>
class Owned {
  public:
    using Handle = typename Traits::Handle;

    Owned() = default;
    explicit Owned(Handle handle) : handle_(handle) {}
    Owned(Owned&& other) noexcept : handle_(other.release()) {}
    Owned& operator=(Owned&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~Owned() { reset(); }

    Handle get() const { return handle_; }
    explicit operator bool() const { return handle_ != Traits::none(); }
    Handle release() { return std::exchange(handle_, Traits::none()); }
    void reset(Handle handle = Traits::none()) {
        if (handle_ != Traits::none()) Traits::close(handle_);
        handle_ = handle;
    }

  private:
    Handle handle_ = Traits::none();
};

template <class HandleType>
struct NullIsNone {
    using Handle = HandleType;
    static HandleType none() { return nullptr; }
};

struct FileTraits {
    using Handle = HANDLE;
    static Handle none() { return INVALID_HANDLE_VALUE; }
    static void close(Handle handle) { ::CloseHandle(handle); }
};
struct PagesTraits : NullIsNone<void*> {
    static void close(void* pages) { ::VirtualFree(pages, 0, MEM_RELEASE); }
};
struct FindTraits {
    using Handle = HANDLE;
    static Handle none() { return INVALID_HANDLE_VALUE; }
    static void close(Handle handle) { ::FindClose(handle); }
};
struct ObjectTraits : NullIsNone<HANDLE> {
    static void close(HANDLE handle) { ::CloseHandle(handle); }
};
struct KeyTraits : NullIsNone<HKEY> {
    static void close(HKEY key) { ::RegCloseKey(key); }
};
struct ModuleTraits : NullIsNone<HMODULE> {
    static void close(HMODULE module) { ::FreeLibrary(module); }
};
struct MenuTraits : NullIsNone<HMENU> {
    static void close(HMENU menu) { ::DestroyMenu(menu); }
};
struct FontTraits : NullIsNone<HFONT> {
    static void close(HFONT font) { ::DeleteObject(font); }
};
struct BitmapTraits : NullIsNone<HBITMAP> {
    static void close(HBITMAP bitmap) { ::DeleteObject(bitmap); }
};

using OwnedFile = Owned<FileTraits>;
// Memory from VirtualAlloc.
using OwnedPages = Owned<PagesTraits>;
using OwnedFind = Owned<FindTraits>;
using OwnedObject = Owned<ObjectTraits>;
using OwnedKey = Owned<KeyTraits>;
using OwnedModule = Owned<ModuleTraits>;
using OwnedMenu = Owned<MenuTraits>;
using OwnedFont = Owned<FontTraits>;
using OwnedBitmap = Owned<BitmapTraits>;

// On 9x a failing stub gives NULL where the NT family gives INVALID_HANDLE_VALUE; both mean "none".
inline HANDLE noneIfNull(HANDLE handle) {
    return handle ? handle : INVALID_HANDLE_VALUE;
}

}  // namespace win32
