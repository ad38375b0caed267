#include "win32/registry/registry_tree.h"

#include "win32/base/flavour.h"
#include "win32/system/system.h"

namespace win32 {

namespace {

// RegDeleteKey alone deletes the children on Windows 9x, refuses on the NT family, and follows links there.

const REGSAM deleteAccess = DELETE | KEY_READ;

// Deletes the key that a handle is open on, link or not, in the view it was opened in.
LONG deleteOpened(const RegistryKey& key) {
    using NtDeleteKey = LONG(WINAPI*)(HANDLE);
    using RtlNtStatusToDosError = ULONG(WINAPI*)(LONG);
    static const auto ntDeleteKey = systemProcedure<NtDeleteKey>(L"ntdll.dll", "NtDeleteKey");
    static const auto toDosError =
        systemProcedure<RtlNtStatusToDosError>(L"ntdll.dll", "RtlNtStatusToDosError");
    if (!ntDeleteKey || !toDosError) return ERROR_CALL_NOT_IMPLEMENTED;
    LONG status = ntDeleteKey(key.get());
    return status < 0 ? static_cast<LONG>(toDosError(status)) : ERROR_SUCCESS;
}

LONG deleteEmptyKey(HKEY root, const std::wstring& path, RegistryKey& key) {
    if (flavour() == Flavour::wide) return deleteOpened(key);
    key.close();
    return withFlavour([&](auto f) { return f.regDeleteKey(root, f.in(path)); });
}

LONG openToDelete(RegistryKey& key, HKEY root, const std::wstring& path, RegistryView view) {
    if (LONG error = checkSubkey(root, path, view)) return error;
    return key.openLink(root, path, deleteAccess, view);
}

// Gives every key's name to `step`, until one fails. A link opened as such has nothing below it.
template <class Step>
LONG forEachBelow(const RegistryKey& key, Step step) {
    std::vector<std::wstring> names;
    if (LONG error = subkeyNames(key, names)) return error;
    for (const std::wstring& name : names) {
        if (LONG error = step(name)) return error;
    }
    return ERROR_SUCCESS;
}

// Deep trees are no danger to the stack: a path ends at some hundred levels.
LONG checkTree(HKEY root, const std::wstring& path, RegistryView view) {
    RegistryKey key;
    if (LONG error = openToDelete(key, root, path, view)) return error;
    return forEachBelow(key, [&](const std::wstring& name) { return checkTree(key.get(), name, view); });
}

LONG deleteTree(HKEY root, const std::wstring& path, RegistryView view) {
    RegistryKey key;
    if (LONG error = openToDelete(key, root, path, view)) return error;
    const LONG error =
        forEachBelow(key, [&](const std::wstring& name) { return deleteTree(key.get(), name, view); });
    return error ? error : deleteEmptyKey(root, path, key);
}

}  // namespace

LONG deleteKeyTree(HKEY root, const std::wstring& path, RegistryView view) {
    std::wstring cut = path.substr(0, path.find_last_not_of(L'\\') + 1);
    if (cut.empty()) return ERROR_INVALID_PARAMETER;
    const LONG error = checkTree(root, cut, view);
    return error ? error : deleteTree(root, cut, view);
}

}  // namespace win32
