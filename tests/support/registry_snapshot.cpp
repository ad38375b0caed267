#include "tests/support/registry_snapshot.h"

#include <doctest/doctest.h>

#include <vector>

#include "tests/support/native_registry.h"
#include "win32/base/handle.h"

namespace {

struct Buffers {
    std::vector<wchar_t> name = std::vector<wchar_t>(17000);
    std::string data = std::string(4 << 20, '\0');
};

StoredKey valuesOf(HKEY key, Buffers& buffers) {
    StoredKey values;
    for (DWORD position = 0;; ++position) {
        DWORD length = static_cast<DWORD>(buffers.name.size()),
              size = static_cast<DWORD>(buffers.data.size());
        DWORD type = 0;
        const LONG error = ::RegEnumValueW(key, position, buffers.name.data(), &length, nullptr, &type,
                                           reinterpret_cast<BYTE*>(buffers.data.data()), &size);
        if (error == ERROR_NO_MORE_ITEMS) return values;
        REQUIRE(error == ERROR_SUCCESS);
        values[{buffers.name.data(), length}] = {type, buffers.data.substr(0, size)};
    }
}

// A key that may not be read is told by the value `(refused)`.
void collect(HKEY key, const std::wstring& path, Snapshot& all, Buffers& buffers) {
    StoredKey& stored = all.keys[path];
    if (!key) {
        stored[L"(refused)"] = {};
        return;
    }
    stored = valuesOf(key, buffers);
    const auto target = stored.find(L"SymbolicLinkValue");
    if (target != stored.end() && target->second.type == REG_LINK) return;
    for (DWORD position = 0;; ++position) {
        DWORD length = 300;
        wchar_t name[300];
        if (::RegEnumKeyExW(key, position, name, &length, nullptr, nullptr, nullptr, nullptr)) return;
        win32::OwnedKey child(nativeKey("ZwOpenKey", key, {name, length}, KEY_READ));
        collect(child.get(), path + L'\\' + std::wstring(name, length), all, buffers);
    }
}

bool isAtOrBelow(const std::wstring& path, const std::wstring& top) {
    return path == top || path.compare(0, top.size() + 1, top + L'\\') == 0;
}

}  // namespace

void Snapshot::erase(const std::wstring& path) {
    std::erase_if(keys, [&](const auto& key) { return isAtOrBelow(key.first, path); });
}

Snapshot Snapshot::below(const std::wstring& path) const {
    Snapshot part = *this;
    std::erase_if(part.keys, [&](const auto& key) { return !isAtOrBelow(key.first, path); });
    return part;
}

Snapshot snapshot() {
    Snapshot all;
    static Buffers buffers;
    for (HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        // The native calls want a real handle, which opening does not give.
        HKEY key = nullptr;
        REQUIRE(::RegCreateKeyExW(hive, L"", 0, nullptr, 0, KEY_READ, nullptr, &key, nullptr) ==
                ERROR_SUCCESS);
        win32::OwnedKey owner(key);
        const bool isMachine = hive == HKEY_LOCAL_MACHINE;
        collect(key, isMachine ? L"HKEY_LOCAL_MACHINE" : L"HKEY_CURRENT_USER", all, buffers);
    }
    return all;
}

Snapshot snapshotOf(const reg::File& file) {
    Snapshot all;
    for (const reg::Key& key : file.keys) {
        StoredKey& stored = all.keys[key.path];
        for (const reg::Value& value : key.values) stored[value.name] = {value.type, value.data};
    }
    return all;
}
