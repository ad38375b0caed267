// What is opened is closed once, when its owner goes.
#include <doctest/doctest.h>

#include <functional>

#include "tests/support/replaced_import.h"
#include "tests/support/temp_folder.h"
#include "tests/support/text.h"
#include "win32/base/handle.h"

namespace {

HANDLE closedSearch = nullptr;
BOOL WINAPI findClose(HANDLE search) {
    closedSearch = search;
    return TRUE;
}

bool isOpen(HANDLE handle) {
    DWORD flags = 0;
    return ::GetHandleInformation(handle, &flags);
}

// Owns what `open` gives, and passes it on to others: each has it for itself, and the last one closes it.
template <class Owner>
void checkOwner(const std::function<typename Owner::Handle()>& open,
                const std::function<bool(typename Owner::Handle)>& isOpen) {
    const auto one = open(), two = open(), three = open();
    {
        Owner first(one), none;
        CHECK(first);
        CHECK_FALSE(none);
        Owner moved(std::move(first));
        CHECK_FALSE(first);
        CHECK(moved.get() == one);
        CHECK(isOpen(one));
        moved = Owner(two);
        CHECK_FALSE(isOpen(one));
        CHECK(isOpen(two));
        CHECK(moved.release() == two);
        CHECK_FALSE(moved);
        CHECK(isOpen(two));
        none.reset(two);
        none.reset(three);
        CHECK_FALSE(isOpen(two));
        CHECK(isOpen(three));
    }
    CHECK_FALSE(isOpen(three));
    Owner(open()).reset();
}

}  // namespace

TEST_CASE_FIXTURE(TempFolder, "files, events, keys and memory go with their owners") {
    int number = 0;
    checkOwner<win32::OwnedFile>(
        [&] {
            return ::CreateFileW(file(std::to_wstring(++number)).c_str(), GENERIC_WRITE, 0, nullptr,
                                 CREATE_ALWAYS, 0, nullptr);
        },
        isOpen);
    checkOwner<win32::OwnedObject>([] { return ::CreateEventW(nullptr, FALSE, FALSE, nullptr); }, isOpen);
    checkOwner<win32::OwnedKey>(
        [] {
            HKEY key = nullptr;
            REQUIRE(::RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, &key) == 0);
            return key;
        },
        [](HKEY key) {
            return ::RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                      nullptr, nullptr, nullptr, nullptr) == 0;
        });
    checkOwner<win32::OwnedPages>(
        [] { return ::VirtualAlloc(nullptr, 1 << 16, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE); },
        [](void* pages) {
            MEMORY_BASIC_INFORMATION told = {};
            ::VirtualQuery(pages, &told, sizeof told);
            return told.State == MEM_COMMIT;
        });
}

TEST_CASE("menus, fonts and bitmaps go with their owners") {
    checkOwner<win32::OwnedMenu>([] { return ::CreatePopupMenu(); },
                                 [](HMENU menu) { return ::IsMenu(menu) != FALSE; });
    int height = 10;
    checkOwner<win32::OwnedFont>(
        [&] {
            LOGFONTW font = {};
            font.lfHeight = ++height;
            return ::CreateFontIndirectW(&font);
        },
        [](HFONT font) { return ::GetObjectType(font) == OBJ_FONT; });
    checkOwner<win32::OwnedBitmap>([] { return ::CreateBitmap(2, 2, 1, 1, nullptr); },
                                   [](HBITMAP bitmap) { return ::GetObjectType(bitmap) == OBJ_BITMAP; });
}

TEST_CASE("a search and a library go with their owners") {
    {
        const ReplacedImport call("FindClose", &findClose);
        const HANDLE search = reinterpret_cast<HANDLE>(0x1234);
        win32::OwnedFind(search).reset();
        CHECK(closedSearch == search);
        closedSearch = nullptr;
        win32::OwnedFind(win32::noneIfNull(nullptr)).reset();
        CHECK(closedSearch == nullptr);
        CHECK(win32::noneIfNull(search) == search);
    }
    const wchar_t* const library = L"msacm32.dll";
    REQUIRE(::GetModuleHandleW(library) == nullptr);
    {
        const win32::OwnedModule owner(::LoadLibraryW(library));
        REQUIRE(owner);
        CHECK(::GetModuleHandleW(library) == owner.get());
    }
    CHECK(::GetModuleHandleW(library) == nullptr);
}
