// RegistryAccess over hives of the test's own.
#pragma once

#include <doctest/doctest.h>

#include "helmkit/registry_access.h"
#include "tests/support/objects.h"
#include "tests/support/registry_fixture.h"
#include "win32/base/flavour.h"

namespace registry_test {

constexpr LONG hklm = static_cast<LONG>(0x80000002);
constexpr LONG hkcu = static_cast<LONG>(0x80000001);
inline const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";

struct Registry : RegistryFixture {
    win32::ComPtr<helmkit::server::RegistryAccess> access = make<helmkit::server::RegistryAccess>();
    LONG status = -99;

    std::wstring read(const std::wstring& name, const std::wstring& key = run) {
        return stringFrom([&](BSTR* data) {
            return access->ReadValue(hklm, bs(key).get(), bs(name).get(), data, &status);
        });
    }
    LONG write(const std::wstring& name, const std::wstring& data, const std::wstring& key = run) {
        REQUIRE(access->WriteValue(hklm, bs(key).get(), bs(name).get(), bs(data).get(), &status) == S_OK);
        return status;
    }
    LONG deleteValue(const std::wstring& name, const std::wstring& key = run) {
        REQUIRE(access->DeleteValue(hklm, bs(key).get(), bs(name).get(), &status) == S_OK);
        return status;
    }
    LONG deleteKey(const std::wstring& key) {
        REQUIRE(access->DeleteKey(hklm, bs(key).get(), &status) == S_OK);
        return status;
    }
    LONG type(const std::wstring& name, const std::wstring& key = run) {
        LONG found = 0;
        REQUIRE(access->ValueType(hklm, bs(key).get(), bs(name).get(), &found) == S_OK);
        return found;
    }
    std::vector<std::wstring> values(const std::wstring& key = run) {
        win32::ComPtr<IKeyedList> names;
        REQUIRE(access->EnumValues(hklm, bs(key).get(), names.out()) == S_OK);
        return itemsOf(names.get());
    }
    std::vector<std::wstring> subkeys(const std::wstring& key) {
        win32::ComPtr<IKeyedList> names;
        REQUIRE(access->EnumSubkeys(hklm, bs(key).get(), names.out()) == S_OK);
        return itemsOf(names.get());
    }
};

using Names = std::vector<std::wstring>;

inline bool isWide() {
    return win32::flavour() == win32::Flavour::wide;
}

}  // namespace registry_test
