#include <cstring>
#include <string>
#include <vector>

#include "failing.h"

// On Windows 98 a key that is opened a second time answers with the handle of the first, and a value or key
// that goes away is gone for both.
namespace {

struct OpenKey {
    std::string path;  // the parent's handle as a number, and the name below it
    HKEY handle;
    int owners;
};

std::vector<OpenKey>& openKeys() {
    static std::vector<OpenKey> keys;
    return keys;
}

bool isRoot(HKEY key) {
    return reinterpret_cast<ULONG_PTR>(key) >= 0x80000000;
}

std::string pathOf(HKEY parent, const char* name) {
    std::string path;
    for (const OpenKey& key : openKeys())
        if (key.handle == parent) path = key.path;
    if (path.empty()) path = std::to_string(reinterpret_cast<ULONG_PTR>(parent));
    if (name && *name) path = path + '\\' + name;
    for (char& letter : path)
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter + ('a' - 'A'));
    return path;
}

OpenKey* findOpen(const std::string& path) {
    for (OpenKey& key : openKeys())
        if (key.path == path) return &key;
    return nullptr;
}

// There are no access rights: what may be opened may be written.
LONG openOnce(HKEY parent, const char* name, HKEY* result, LONG (*open)(HKEY, const char*, REGSAM, HKEY*)) {
    std::string path = pathOf(parent, name);
    if (OpenKey* already = findOpen(path)) {
        ++already->owners;
        *result = already->handle;
        return ERROR_SUCCESS;
    }
    LONG status = open(parent, name, KEY_ALL_ACCESS, result);
    if (status == ERROR_ACCESS_DENIED) status = open(parent, name, KEY_READ, result);
    if (status == ERROR_SUCCESS && !isRoot(*result)) openKeys().push_back({path, *result, 1});
    return status;
}

bool asksForAView(REGSAM access) {
    if (!(access & (KEY_WOW64_32KEY | KEY_WOW64_64KEY))) return false;
    recordFailure("a registry key opened with KEY_WOW64_...", ERROR_ACCESS_DENIED);
    return true;
}

void forget(const std::string& path) {
    for (OpenKey& key : openKeys())
        if (key.path == path || key.path.compare(0, path.size() + 1, path + '\\') == 0)
            key.path += " (deleted)";
}

}  // namespace

IMITATED(LONG, RegOpenKeyExA)(HKEY parent, const char* name, DWORD, REGSAM access, HKEY* result) {
    if (asksForAView(access)) return ERROR_ACCESS_DENIED;
    return openOnce(parent, name, result, [](HKEY from, const char* below, REGSAM rights, HKEY* key) {
        return ::RegOpenKeyExA(from, below, 0, rights, key);
    });
}

IMITATED(LONG, RegCreateKeyExA)
(HKEY parent, const char* name, DWORD, char*, DWORD, REGSAM access, SECURITY_ATTRIBUTES*, HKEY* result,
 DWORD* disposition) {
    if (asksForAView(access)) return ERROR_ACCESS_DENIED;
    if (disposition) *disposition = REG_OPENED_EXISTING_KEY;
    return openOnce(parent, name, result, [](HKEY from, const char* below, REGSAM rights, HKEY* key) {
        return ::RegCreateKeyExA(from, below, 0, nullptr, 0, rights, nullptr, key, nullptr);
    });
}

IMITATED(LONG, RegCloseKey)(HKEY handle) {
    if (isRoot(handle)) return ERROR_SUCCESS;
    for (size_t i = 0; i < openKeys().size(); ++i) {
        OpenKey& key = openKeys()[i];
        if (key.handle != handle) continue;
        if (--key.owners) return ERROR_SUCCESS;
        openKeys().erase(openKeys().begin() + static_cast<ptrdiff_t>(i));
        return ::RegCloseKey(handle);
    }
    recordFailure("RegCloseKey of a key that is closed already", ERROR_SUCCESS);
    return ERROR_SUCCESS;
}

// Deletes what is below as well.
IMITATED(LONG, RegDeleteKeyA)(HKEY parent, const char* name) {
    HKEY key;
    LONG status = ::RegOpenKeyExA(parent, name, 0, KEY_ALL_ACCESS, &key);
    if (status != ERROR_SUCCESS) return status;
    char below[256];
    while (::RegEnumKeyA(key, 0, below, sizeof below) == ERROR_SUCCESS && status == ERROR_SUCCESS)
        status = imitated_RegDeleteKeyA(key, below);
    ::RegCloseKey(key);
    forget(pathOf(parent, name));
    return status == ERROR_SUCCESS ? ::RegDeleteKeyA(parent, name) : status;
}

// A missing value has the type 0, and the size stays what the caller set.
IMITATED(LONG, RegQueryValueExA)
(HKEY key, const char* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size) {
    DWORD before = size ? *size : 0;
    LONG status = ::RegQueryValueExA(key, name, reserved, type, data, size);
    if (status == ERROR_FILE_NOT_FOUND) {
        if (type) *type = 0;
        if (size) *size = before;
    }
    return status;
}

// A string that is written without its end gets one.
IMITATED(LONG, RegSetValueExA)
(HKEY key, const char* name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    if (type == REG_SZ && !data) {
        recordFailure("RegSetValueExA with no string", ERROR_INVALID_PARAMETER);
        return ERROR_INVALID_PARAMETER;
    }
    if (type != REG_SZ || std::memchr(data, 0, size))
        return ::RegSetValueExA(key, name, reserved, type, data, size);
    std::string ended(reinterpret_cast<const char*>(data), size);
    return ::RegSetValueExA(key, name, reserved, type, reinterpret_cast<const BYTE*>(ended.c_str()),
                            size + 1);
}
