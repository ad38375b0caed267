#include "tests/support/registry_fixture.h"

#include <doctest/doctest.h>

#include "tests/support/native_registry.h"
#include "win32/base/utf16_bytes.h"

namespace {

win32::OwnedKey createdKey(HKEY root, const std::wstring& path, DWORD options = REG_OPTION_NON_VOLATILE) {
    HKEY key = nullptr;
    LONG error = ::RegCreateKeyExW(
        root, path.c_str(), 0, nullptr, options,
        options & REG_OPTION_CREATE_LINK ? KEY_ALL_ACCESS | KEY_CREATE_LINK : KEY_ALL_ACCESS, nullptr, &key,
        nullptr);
    REQUIRE(error == ERROR_SUCCESS);
    return win32::OwnedKey(key);
}

void deleteAllBelow(HKEY key) {
    static const auto deleteKey = native<NTSTATUS(WINAPI*)(HANDLE)>("ZwDeleteKey");
    wchar_t name[300];
    DWORD position = 0;
    for (;;) {
        DWORD length = 300;
        if (::RegEnumKeyExW(key, position, name, &length, nullptr, nullptr, nullptr, nullptr)) return;
        win32::OwnedKey child(nativeKey("ZwOpenKey", key, {name, length}));
        bool isLink = child && !::RegQueryValueExW(child.get(), L"SymbolicLinkValue", nullptr, nullptr,
                                                   nullptr, nullptr);
        if (child && !isLink) deleteAllBelow(child.get());
        if (!child || deleteKey(child.get()) < 0) ++position;
    }
}

std::wstring nativePath(HKEY key) {
    using Query = NTSTATUS(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*);
    union {
        ULONG length;
        char bytes[2048];
    } name;
    ULONG size = 0;
    const int keyNameInformation = 3;
    REQUIRE(native<Query>("ZwQueryKey")(key, keyNameInformation, &name, sizeof name, &size) >= 0);
    return win32::unitsOf({name.bytes + sizeof(ULONG), name.length});
}

}  // namespace

std::wstring RegistryFixture::name() {
    return L"Software\\QuillonTests" + std::to_wstring(::GetCurrentProcessId());
}

RegistryFixture::RegistryFixture() {
    base_ = createdKey(HKEY_CURRENT_USER, name());
    deleteAllBelow(base_.get());
    machine_ = createdKey(base_.get(), L"machine");
    user_ = createdKey(base_.get(), L"user");
    classes_ = createdKey(base_.get(), L"classes");
    REQUIRE(::RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine_.get()) == ERROR_SUCCESS);
    REQUIRE(::RegOverridePredefKey(HKEY_CURRENT_USER, user_.get()) == ERROR_SUCCESS);
    REQUIRE(::RegOverridePredefKey(HKEY_CLASSES_ROOT, classes_.get()) == ERROR_SUCCESS);
}

RegistryFixture::~RegistryFixture() {
    for (HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER, HKEY_CLASSES_ROOT})
        ::RegOverridePredefKey(hive, nullptr);
    deleteAllBelow(base_.get());
    native<NTSTATUS(WINAPI*)(HANDLE)>("ZwDeleteKey")(base_.get());
}

void RegistryFixture::makeKey(HKEY hive, const std::wstring& path) {
    createdKey(hive, path);
}

bool RegistryFixture::hasKey(HKEY hive, const std::wstring& path) {
    HKEY key = nullptr;
    LONG error = ::RegOpenKeyExW(hive, path.c_str(), 0, KEY_READ, &key);
    win32::OwnedKey owner(error ? nullptr : key);
    return !error;
}

void RegistryFixture::setString(HKEY hive, const std::wstring& path, const std::wstring& name,
                                const std::wstring& text, DWORD type) {
    setBytes(hive, path, name, type, win32::bytesOf(text + L'\0'));
}

void RegistryFixture::setNumber(HKEY hive, const std::wstring& path, const std::wstring& name, DWORD number) {
    setBytes(hive, path, name, REG_DWORD, {reinterpret_cast<char*>(&number), sizeof number});
}

// RegSetValueEx would add a terminator that happens to follow the bytes.
void RegistryFixture::setBytes(HKEY hive, const std::wstring& path, const std::wstring& name, DWORD type,
                               std::string_view bytes) {
    setCounted(hive, path, name, type, bytes);
}

void RegistryFixture::setCounted(HKEY hive, const std::wstring& path, std::wstring_view name, DWORD type,
                                 std::string_view bytes) {
    using SetValue = NTSTATUS(WINAPI*)(HANDLE, UNICODE_STRING*, ULONG, ULONG, const void*, ULONG);
    win32::OwnedKey key = createdKey(hive, path);
    UNICODE_STRING text = counted(name);
    NTSTATUS status = native<SetValue>("ZwSetValueKey")(key.get(), &text, 0, type, bytes.data(),
                                                        static_cast<ULONG>(bytes.size()));
    REQUIRE(status >= 0);
}

void RegistryFixture::makeCountedKey(HKEY hive, const std::wstring& path, std::wstring_view name) {
    win32::OwnedKey key = createdKey(hive, path);
    win32::OwnedKey child(nativeKey("ZwCreateKey", key.get(), name));
    REQUIRE(child);
}

void RegistryFixture::makeLink(HKEY hive, const std::wstring& path, HKEY targetHive,
                               const std::wstring& targetPath) {
    const std::wstring name = nativePath(createdKey(targetHive, L"").get()) + L'\\' + targetPath;
    win32::OwnedKey link = createdKey(hive, path, REG_OPTION_CREATE_LINK);
    LONG error = ::RegSetValueExW(link.get(), L"SymbolicLinkValue", 0, REG_LINK,
                                  reinterpret_cast<const BYTE*>(name.data()),
                                  static_cast<DWORD>(name.size() * sizeof(wchar_t)));
    REQUIRE(error == ERROR_SUCCESS);
}

void RegistryFixture::deleteKey(HKEY hive, const std::wstring& path) {
    const size_t end = path.rfind(L'\\');
    win32::OwnedKey key(
        nativeKey("ZwOpenKey", createdKey(hive, path.substr(0, end)).get(), path.substr(end + 1)));
    REQUIRE(key);
    REQUIRE(native<NTSTATUS(WINAPI*)(HANDLE)>("ZwDeleteKey")(key.get()) >= 0);
}

void RegistryFixture::deleteBelow(HKEY hive, const std::wstring& path) {
    deleteAllBelow(createdKey(hive, path).get());
}

std::string RegistryFixture::bytes(HKEY hive, const std::wstring& path, const std::wstring& name,
                                   DWORD* type) {
    win32::OwnedKey key = createdKey(hive, path);
    DWORD size = 0;
    LONG error = ::RegQueryValueExW(key.get(), name.c_str(), nullptr, type, nullptr, &size);
    REQUIRE(error == ERROR_SUCCESS);
    std::string data(size, '\0');
    ::RegQueryValueExW(key.get(), name.c_str(), nullptr, type, reinterpret_cast<BYTE*>(data.data()), &size);
    return data;
}

bool RegistryFixture::hasValue(HKEY hive, const std::wstring& path, const std::wstring& name) {
    HKEY key = nullptr;
    if (::RegOpenKeyExW(hive, path.c_str(), 0, KEY_READ, &key)) return false;
    win32::OwnedKey owner(key);
    return !::RegQueryValueExW(key, name.c_str(), nullptr, nullptr, nullptr, nullptr);
}

DWORD RegistryFixture::valueCount(HKEY hive, const std::wstring& path) {
    win32::OwnedKey key = createdKey(hive, path);
    DWORD count = 0;
    ::RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count, nullptr,
                       nullptr, nullptr, nullptr);
    return count;
}
