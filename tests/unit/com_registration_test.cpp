// Registering classes where Windows refuses some of it.
#include "win32/com/com_registration.h"

#include <doctest/doctest.h>

#include "helmkit/classes.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/replaced_import.h"
#include "tests/support/text.h"
#include "win32/base/text.h"

namespace {

std::wstring wide(const wchar_t* text) {
    return text ? text : L"";
}
std::wstring wide(const char* text) {
    return text ? win32::fromAnsi(text) : L"";
}

// The third value of that name is refused.
int asked = 0;
template <class Char>
using SetValue = LONG(WINAPI*)(HKEY, const Char*, DWORD, DWORD, const BYTE*, DWORD);
template <class Char>
SetValue<Char> realSet;
template <class Char>
LONG WINAPI setValue(HKEY key, const Char* name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    if (wide(name) == L"ThreadingModel" && ++asked == 3) return ERROR_DISK_FULL;
    return realSet<Char>(key, name, reserved, type, data, size);
}

DWORD keysIn(const wchar_t* path) {
    HKEY opened = nullptr;
    if (::RegOpenKeyExW(HKEY_CLASSES_ROOT, path, 0, KEY_READ, &opened)) return 0;
    const win32::OwnedKey key(opened);
    DWORD count = 0;
    ::RegQueryInfoKeyW(opened, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr, nullptr,
                       nullptr, nullptr);
    return count;
}

}  // namespace

TEST_CASE_FIXTURE(RegistryFixture,
                  "a registration that fails takes back what was written, and nothing else") {
    const ReplacedImport wideCall("RegSetValueExW", &setValue<wchar_t>, realSet<wchar_t>);
    const ReplacedImport ansiCall("RegSetValueExA", &setValue<char>, realSet<char>);
    makeKey(HKEY_CLASSES_ROOT, L"CLSID\\another");
    asked = 0;
    CHECK(win32::registerModule(helmkit::comModule()) == HRESULT_FROM_WIN32(ERROR_DISK_FULL));
    CHECK(asked == 3);
    CHECK(keysIn(L"CLSID") == 1);
    for (size_t i = 0; i < helmkit::comModule().count; ++i)
        CHECK_FALSE(hasKey(HKEY_CLASSES_ROOT, helmkit::comModule().classes[i].progId));
    CHECK(win32::unregisterModule(helmkit::comModule()) == S_OK);
    CHECK(hasKey(HKEY_CLASSES_ROOT, L"CLSID\\another"));
}
