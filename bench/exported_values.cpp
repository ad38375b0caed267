#include "bench/exported_values.h"

#include "tests/support/registry_fixture.h"

namespace bench {

namespace {

std::wstring keyOf(const ExportedKey& key, int number) {
    return key.isDeep ? key.path + L"\\part " + std::to_wstring(number / 10) : key.path;
}

void storeValue(const ExportedKey& key, int number) {
    const std::wstring path = keyOf(key, number), name = L"Value " + std::to_wstring(number);
    if (number % 20 == 7) return RegistryFixture::setNumber(key.hive, path, name, number);
    const DWORD type = number % 20 == 13 ? REG_EXPAND_SZ : REG_SZ;
    RegistryFixture::setString(key.hive, path, name,
                               L"\"C:\\Program Files\\Example\\program" + std::to_wstring(number) +
                                   L".exe\" -start " + std::to_wstring(number % 10),
                               type);
}

}  // namespace

const std::vector<ExportedKey>& exportedKeys() {
    static const std::wstring base = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\";
    static const HKEY machine = HKEY_LOCAL_MACHINE, user = HKEY_CURRENT_USER;
    static const std::vector<ExportedKey> keys = {
        {machine, base + L"Run", 25, false},
        {user, base + L"Run", 25, false},
        {machine, base + L"RunServices", 5, false},
        {user, base + L"RunServices", 5, false},
        {machine, base + L"RunOnce", 5, false},
        {user, base + L"RunOnce", 5, false},
        {machine, base + L"RunServicesOnce", 5, false},
        {user, base + L"RunServicesOnce", 5, false},
        {machine, base + L"policies\\Explorer\\Run", 5, false},
        {user, base + L"policies\\Explorer\\Run", 5, false},
        {machine, L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify", 5, true},
        {machine, base + L"RunOnceEx", 3, true},
        {user, base + L"RunOnceEx", 2, true},
    };
    return keys;
}

void storeExportedValues(int count) {
    for (const ExportedKey& key : exportedKeys()) {
        for (int i = 0; i < count * key.percent / 100; ++i) storeValue(key, i);
    }
}

}  // namespace bench
