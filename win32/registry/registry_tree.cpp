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

// Deep trees are no danger to the stack: a path ends at some hundred levels.
LONG deleteBelow(const RegistryKey& key, RegistryView view) {
    std::vector<std::wstring> names;
    if (LONG error = subkeyNames(key, names)) return error;
    for (const std::wstring& name : names) {
        if (LONG error = deleteKeyTree(key.get(), name, view)) return error;
    }
    return ERROR_SUCCESS;
}

}  // namespace

LONG deleteKeyTree(HKEY root, const std::wstring& path, RegistryView view) {
    std::wstring cut = path.substr(0, path.find_last_not_of(L'\\') + 1);
    if (cut.empty()) return ERROR_INVALID_PARAMETER;
    RegistryKey key;
    if (LONG error = checkSubkey(root, cut, view)) return error;
    if (LONG error = key.openLink(root, cut, deleteAccess, view)) return error;
    // A link opened as such has nothing below it.
    if (LONG error = deleteBelow(key, view)) return error;
    return deleteEmptyKey(root, cut, key);
}

}  // namespace win32
