#include "helmkit/registry_export.h"

#include "helmkit/export_text.h"
#include "win32/base/error.h"
#include "win32/registry/registry.h"
#include "win32/system/desktop.h"

namespace helmkit {

namespace {

std::wstring fullName(HKEY hive, const std::wstring& path) {
    std::wstring name = hive == HKEY_LOCAL_MACHINE  ? L"HKEY_LOCAL_MACHINE"
                        : hive == HKEY_CURRENT_USER ? L"HKEY_CURRENT_USER"
                                                    : L"HKEY_CLASSES_ROOT";
    size_t end = path.find_last_not_of(L'\\') + 1;
    return end == 0 ? name : name + L'\\' + path.substr(0, end);
}

// Windows 9x gets a file of the ANSI header, the NT family one of the Unicode header.
ExportedValue exported(const std::wstring& name, const win32::RegistryValue& value) {
    bool isUnicode = win32::isNtFamily();
    return {name, value.type, value.data, isUnicode ? value.data : win32::ansiData(value.type, value.data)};
}

void appendError(std::wstring& text, const std::wstring& key, LONG error) {
    appendOmittedKey(text, key, win32::systemDescription(error));
}

void appendValues(std::wstring& text, const std::wstring& key, const win32::RegistryKey& opened) {
    std::wstring name;
    win32::RegistryValue value;
    LONG error = ERROR_SUCCESS;
    for (DWORD i = 0; !(error = opened.valueAt(i, name, value)); ++i)
        appendValue(text, key, exported(name, value));
    if (error != ERROR_NO_MORE_ITEMS) appendError(text, key, error);
}

void appendKey(std::wstring& text, const std::wstring& key, const win32::RegistryKey& opened);

void appendSubkey(std::wstring& text, const std::wstring& key, const win32::RegistryKey& parent,
                  const std::wstring& name) {
    if (!canBeWritten(name)) return appendOmittedKey(text, key, {});
    win32::RegistryKey child;
    LONG error = child.openLink(parent.get(), name, KEY_READ);
    // Deleted since it was listed.
    if (win32::isAbsent(error)) return;
    if (error) return appendError(text, key, error);
    // Following links could go round for ever.
    if (child.isLink()) return appendOmittedKey(text, key, L"link");
    appendKey(text, key, child);
}

void appendKey(std::wstring& text, const std::wstring& key, const win32::RegistryKey& opened) {
    if (!canBeWritten(key)) return appendOmittedKey(text, key, {});
    appendKeyHeader(text, key);
    appendValues(text, key, opened);
    std::vector<std::wstring> names;
    LONG error = win32::subkeyNames(opened, names);
    for (const std::wstring& name : names) appendSubkey(text, key + L'\\' + name, opened, name);
    if (error) appendError(text, key, error);
}

}  // namespace

std::wstring exportKey(HKEY hive, const std::wstring& path) {
    std::wstring text;
    win32::RegistryKey key;
    LONG error = key.open(hive, path, KEY_READ);
    if (!error) {
        appendKey(text, fullName(hive, path), key);
    } else if (!win32::isAbsent(error)) {
        appendError(text, fullName(hive, path), error);
    }
    return text;
}

std::wstring exportValue(HKEY hive, const std::wstring& path, const std::wstring& name) {
    std::wstring text, key = fullName(hive, path);
    win32::RegistryKey opened;
    win32::RegistryValue value;
    LONG error = opened.open(hive, path, KEY_READ);
    if (!error) error = opened.query(name, value);
    if (error == ERROR_INVALID_NAME || win32::isAbsent(error)) return text;
    if (error) {
        appendError(text, key, error);
    } else if (!canBeWritten(key)) {
        appendOmittedKey(text, key, {});
    } else {
        appendKeyHeader(text, key);
        appendValue(text, key, exported(name, value));
    }
    return text;
}

}  // namespace helmkit
