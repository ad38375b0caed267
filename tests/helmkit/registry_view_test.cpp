#include <doctest/doctest.h>

#include "win32/base/flavour.h"
#include "win32/registry/registry_tree.h"
#include "win32/system/system.h"

// In the real hive: only its software branch has two views.
TEST_CASE("a 32-bit program on 64-bit Windows works on the branch that the system sees") {
    if (!win32::isRedirected()) return;
    using win32::RegistryView;
    const std::wstring path = L"SOFTWARE\\QuillonViewTest";
    win32::RegistryKey key;
    REQUIRE(key.create(HKEY_LOCAL_MACHINE, path + L"\\sub", KEY_ALL_ACCESS) == ERROR_SUCCESS);
    CHECK(win32::isAbsent(key.open(HKEY_LOCAL_MACHINE, path, KEY_READ, RegistryView::own)));
    REQUIRE(key.create(HKEY_LOCAL_MACHINE, path, KEY_ALL_ACCESS, RegistryView::own) == ERROR_SUCCESS);
    if (win32::flavour() == win32::Flavour::wide) {
        CHECK(win32::deleteKeyTree(HKEY_LOCAL_MACHINE, path) == ERROR_SUCCESS);
        CHECK(win32::isAbsent(key.open(HKEY_LOCAL_MACHINE, path, KEY_READ)));
        CHECK(key.open(HKEY_LOCAL_MACHINE, path, KEY_READ, RegistryView::own) == ERROR_SUCCESS);
    }
    key.close();
    // The calls of Windows 9x know no views: what is left is deleted the other way.
    win32::Flavour before = win32::flavour();
    win32::forceFlavour(win32::Flavour::wide);
    win32::deleteKeyTree(HKEY_LOCAL_MACHINE, path);
    CHECK(win32::deleteKeyTree(HKEY_LOCAL_MACHINE, path, RegistryView::own) == ERROR_SUCCESS);
    win32::forceFlavour(before);
}
