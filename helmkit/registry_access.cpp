#include "helmkit/registry_access.h"

#include "helmkit/keyed_list.h"
#include "helmkit/registry_export.h"
#include "helmkit/registry_text.h"
#include "win32/registry/registry_tree.h"

namespace helmkit::server {

namespace {

// A hive crosses as a 32-bit number, which is sign-extended to the predefined handle.
HKEY hiveOf(LONG number) {
    HKEY hive = reinterpret_cast<HKEY>(static_cast<LONG_PTR>(number));
    if (hive != HKEY_CLASSES_ROOT && hive != HKEY_CURRENT_USER && hive != HKEY_LOCAL_MACHINE) {
        win32::raise(E_INVALIDARG, L"Not a registry hive: " + std::to_wstring(static_cast<ULONG>(number)));
    }
    return hive;
}

// What a reader is told about something that is not there.
LONG readStatus(LONG error) {
    return win32::isAbsent(error) ? ERROR_FILE_NOT_FOUND : error;
}

bool isMissing(LONG error) {
    return win32::isAbsent(error) || error == ERROR_INVALID_NAME;
}

LONG writeString(HKEY hive, const std::wstring& path, const std::wstring& name, const std::wstring& text) {
    win32::RegistryKey key;
    if (LONG error = key.createPlace(hive, path, KEY_QUERY_VALUE | KEY_SET_VALUE)) return error;
    win32::RegistryValue present;
    const LONG error = key.query(name, present);
    // Written under another type, a boot program's value would be none any more.
    if (error && !isMissing(error)) return error;
    const bool keepsType = !error && (present.type == REG_EXPAND_SZ || present.type == REG_MULTI_SZ);
    DWORD type = keepsType ? present.type : REG_SZ;
    return key.set(name, type, dataOfString(type, text));
}

// The place is the key above it. One that is a link itself is deleted as such.
LONG deleteBelowItsPlace(HKEY hive, const std::wstring& path) {
    const std::wstring cut = path.substr(0, path.find_last_not_of(L'\\') + 1);
    const size_t end = cut.rfind(L'\\');
    if (end == std::wstring::npos) return win32::deleteKeyTree(hive, cut);
    win32::RegistryKey place;
    if (LONG error = place.openPlace(hive, cut.substr(0, end), KEY_READ)) return error;
    return win32::deleteKeyTree(place.get(), cut.substr(end + 1));
}

// The text of an export as the caller gets it: there are two of it for a moment. Where memory is short for
// that, the largest values are left out, first those of more than 16 MiB.
template <class Export>
BSTR exported(Export exportUpTo) {
    const size_t smallest = 1 << 12;
    for (size_t largest = SIZE_MAX;; largest = largest == SIZE_MAX ? 16 << 20 : largest / 16) {
        try {
            TextPieces pieces = exportUpTo(largest);
            win32::BString text = win32::BString::ofLength(pieces.length());
            pieces.moveTo(text.get());
            return text.release();
        } catch (...) {
            if (win32::currentError().number != E_OUTOFMEMORY || largest <= smallest) throw;
        }
    }
}

}  // namespace

STDMETHODIMP RegistryAccess::ReadValue(LONG hive, BSTR keyPath, BSTR valueName, BSTR* data, LONG* status) {
    return method([&] {
        win32::result(data);
        win32::result(status);
        LONG error = query(hive, keyPath, valueName);
        if (error && !isMissing(error)) win32::raiseWin32(error, win32::BString::copy(keyPath));
        ValueText text = error ? ValueText{{}, readStatus(error)} : textOfValue(value_.type, value_.data);
        *data = win32::BString(text.text).release();
        *status = text.status;
    });
}

STDMETHODIMP RegistryAccess::WriteValue(LONG hive, BSTR keyPath, BSTR valueName, BSTR data, LONG* status) {
    return method([&] {
        forgetKey();
        win32::result(status) = writeString(hiveOf(hive), win32::BString::copy(keyPath),
                                            win32::BString::copy(valueName), win32::BString::copy(data));
    });
}

STDMETHODIMP RegistryAccess::DeleteValue(LONG hive, BSTR keyPath, BSTR valueName, LONG* status) {
    return method([&] {
        forgetKey();
        win32::RegistryKey key;
        LONG error =
            key.openPlace(hiveOf(hive), win32::BString::copy(keyPath), KEY_QUERY_VALUE | KEY_SET_VALUE);
        win32::result(status) = error ? error : key.deleteValue(win32::BString::copy(valueName));
    });
}

STDMETHODIMP RegistryAccess::EnumSubkeys(LONG hive, BSTR keyPath, IKeyedList** names) {
    return method([&] { listNames(hive, keyPath, names, win32::subkeyNames); });
}

STDMETHODIMP RegistryAccess::EnumValues(LONG hive, BSTR keyPath, IKeyedList** names) {
    return method([&] { listNames(hive, keyPath, names, win32::valueNames); });
}

STDMETHODIMP RegistryAccess::DeleteKey(LONG hive, BSTR keyPath, LONG* status) {
    return method([&] {
        forgetKey();
        win32::result(status) = deleteBelowItsPlace(hiveOf(hive), win32::BString::copy(keyPath));
    });
}

STDMETHODIMP RegistryAccess::ExportKey(LONG* hive, BSTR* keyPath, BSTR* text) {
    return method([&] {
        win32::result(text);
        if (!hive || !keyPath) win32::raise(E_POINTER, L"No hive or key was given");
        const HKEY root = hiveOf(*hive);
        const std::wstring path = win32::BString::copy(*keyPath);
        *text = exported([&](size_t largest) { return exportKey(root, path, largest); });
    });
}

STDMETHODIMP RegistryAccess::ExportValue(LONG hive, BSTR keyPath, BSTR valueName, BSTR* text) {
    return method([&] {
        win32::result(text);
        const HKEY root = hiveOf(hive);
        const std::wstring path = win32::BString::copy(keyPath), name = win32::BString::copy(valueName);
        *text = exported([&](size_t largest) { return exportValue(root, path, name, largest); });
    });
}

STDMETHODIMP RegistryAccess::ValueType(LONG hive, BSTR keyPath, BSTR valueName, LONG* type) {
    return method([&] {
        win32::result(type) = -1;
        LONG error = query(hive, keyPath, valueName);
        if (error && !isMissing(error)) win32::raiseWin32(error, win32::BString::copy(keyPath));
        if (!error) *type = static_cast<LONG>(value_.type);
    });
}

LONG RegistryAccess::openForReading(HKEY hive, std::wstring_view path) {
    if (key_ && hive == keyHive_ && path == keyPath_) return ERROR_SUCCESS;
    keyHive_ = hive;
    keyPath_ = path;
    return key_.open(hive, keyPath_, KEY_READ);
}

LONG RegistryAccess::query(LONG hive, BSTR keyPath, BSTR valueName) {
    HKEY root = hiveOf(hive);
    std::wstring_view path = win32::BString::view(keyPath);
    name_ = win32::BString::view(valueName);
    LONG error = openForReading(root, path);
    if (!error) error = key_.query(name_, value_);
    if (error != ERROR_KEY_DELETED) return error;
    // Somebody deleted the key, and may have made it again, since it was opened.
    forgetKey();
    error = openForReading(root, path);
    return error ? error : key_.query(name_, value_);
}

void RegistryAccess::listNames(LONG hive, BSTR keyPath, IKeyedList** names, ListNames list) {
    win32::result(names);
    std::vector<std::wstring> found;
    // Opened anew: the key that is open may be one that was deleted and made again since.
    forgetKey();
    LONG error = openForReading(hiveOf(hive), win32::BString::view(keyPath));
    if (!error) error = list(key_, found);
    if (error && !isMissing(error)) win32::raiseWin32(error, win32::BString::copy(keyPath));
    auto made = win32::ComPtr<KeyedList>::adopt(new KeyedList());
    for (std::wstring& name : found) made->append(std::move(name));
    *names = made.release();
}

}  // namespace helmkit::server
