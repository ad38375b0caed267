#include "win32/registry.h"

#include "win32/flavour.h"
#include "win32/registry_buffers.h"
#include "win32/system.h"

namespace win32 {

namespace {

const REGSAM wow64Key64 = 0x0100;  // KEY_WOW64_64KEY, newer than the headers asked for

// The flag is an error on Windows NT 4 and 2000, so only a redirected program passes it.
REGSAM viewFlag(RegistryView view) {
    return view == RegistryView::whole && isRedirected() ? wow64Key64 : 0;
}

std::wstring withoutLastBackslashes(std::wstring path) {
    while (!path.empty() && path.back() == L'\\') path.pop_back();
    return path;
}

// The ANSI functions would put another character in the place of one that the code page lacks.
bool carriesName(const std::wstring& name) {
    return name.find(L'\0') == std::wstring::npos && (flavour() == Flavour::wide || survivesAnsi(name));
}

LONG openAs(OwnedKey& key, HKEY root, const std::wstring& path, REGSAM access, DWORD options) {
    std::wstring cut = withoutLastBackslashes(path);
    key.reset();
    if (!carriesName(cut)) return ERROR_INVALID_NAME;
    return withFlavour([&](auto f) {
        HKEY opened = nullptr;
        LONG error = f.regOpenKeyEx(root, f.in(cut), options, access, &opened);
        if (error == ERROR_SUCCESS) key.reset(opened);
        return error;
    });
}

}  // namespace

std::string ansiData(DWORD type, const std::string& data) {
    if (!isTextType(type)) return data;
    return toAnsi(unitsOf(data)) + (data.size() % 2 ? data.substr(data.size() - 1) : std::string());
}

bool isAbsent(LONG error) {
    // A key deleted under an open handle answers with ERROR_KEY_DELETED; a path with an empty part is no
    // path.
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_KEY_DELETED ||
           error == ERROR_BAD_PATHNAME;
}

LONG RegistryKey::open(HKEY root, const std::wstring& path, REGSAM access, RegistryView view) {
    return openAs(key_, root, path, access | viewFlag(view), 0);
}

LONG RegistryKey::openLink(HKEY root, const std::wstring& path, REGSAM access, RegistryView view) {
    // The options are reserved on Windows 9x, which has no links.
    DWORD options = flavour() == Flavour::wide ? REG_OPTION_OPEN_LINK : 0;
    return openAs(key_, root, path, access | viewFlag(view), options);
}

LONG RegistryKey::create(HKEY root, const std::wstring& path, REGSAM access, RegistryView view) {
    std::wstring cut = withoutLastBackslashes(path);
    key_.reset();
    if (!carriesName(cut)) return ERROR_INVALID_NAME;
    return withFlavour([&](auto f) {
        HKEY created = nullptr;
        LONG error = f.regCreateKeyEx(root, f.in(cut), DWORD{0}, nullptr, DWORD{REG_OPTION_NON_VOLATILE},
                                      access | viewFlag(view), nullptr, &created, nullptr);
        if (error == ERROR_SUCCESS) key_.reset(created);
        return error;
    });
}

LONG RegistryKey::subkeyAt(DWORD position, std::wstring& name) const {
    return withFlavour([&](auto f) {
        using F = decltype(f);
        return NameBuffer<F>().fill(name, [&](auto* text, DWORD* length) {
            return F::regEnumKeyEx(get(), position, text, length, nullptr, nullptr, nullptr, nullptr);
        });
    });
}

LONG RegistryKey::valueNameAt(DWORD position, std::wstring& name) const {
    return withFlavour([&](auto f) {
        using F = decltype(f);
        return NameBuffer<F>().fill(name, [&](auto* text, DWORD* length) {
            return F::regEnumValue(get(), position, text, length, nullptr, nullptr, nullptr, nullptr);
        });
    });
}

LONG RegistryKey::valueAt(DWORD position, std::wstring& name, RegistryValue& value) const {
    return withFlavour([&](auto f) {
        using F = decltype(f);
        DataBuffer data;
        return data.fill(value, F::isWide, [&](BYTE* bytes, DWORD* size, DWORD* type) {
            DWORD room = *size;
            return NameBuffer<F>().fill(name, [&](auto* text, DWORD* length) {
                *size = room;
                return F::regEnumValue(get(), position, text, length, nullptr, type, bytes, size);
            });
        });
    });
}

LONG RegistryKey::query(const std::wstring& name, RegistryValue& value) const {
    if (LONG refused = checkName(name)) return refused;
    return withFlavour([&](auto f) {
        using F = decltype(f);
        auto spelled = textOf<F>(name);
        DataBuffer data;
        return data.fill(value, F::isWide, [&](BYTE* bytes, DWORD* size, DWORD* type) {
            return F::regQueryValueEx(get(), spelled.c_str(), nullptr, type, bytes, size);
        });
    });
}

LONG RegistryKey::set(const std::wstring& name, DWORD type, const std::string& data) const {
    if (LONG refused = checkName(name)) return refused;
    return withFlavour([&](auto f) {
        using F = decltype(f);
        std::string stored = F::isWide ? data : ansiData(type, data);
        return f.regSetValueEx(get(), f.in(name), DWORD{0}, type,
                               reinterpret_cast<const BYTE*>(stored.data()),
                               static_cast<DWORD>(stored.size()));
    });
}

LONG RegistryKey::deleteValue(const std::wstring& name) const {
    if (LONG refused = checkName(name)) return refused;
    return withFlavour([&](auto f) { return f.regDeleteValue(get(), f.in(name)); });
}

bool RegistryKey::isLink() const {
    RegistryValue value;
    return flavour() == Flavour::wide && query(L"SymbolicLinkValue", value) == ERROR_SUCCESS &&
           value.type == REG_LINK;
}

LONG RegistryKey::checkName(const std::wstring& name) const {
    if (!carriesName(name)) return ERROR_INVALID_NAME;
    if (flavour() == Flavour::wide || name.find(L'?') == std::wstring::npos) return ERROR_SUCCESS;
    std::wstring other;
    int bearers = 0;
    for (DWORD i = 0; valueNameAt(i, other) == ERROR_SUCCESS; ++i) bearers += sameIgnoringCase(name, other);
    return bearers > 1 ? ERROR_INVALID_NAME : ERROR_SUCCESS;
}

LONG subkeyNames(const RegistryKey& key, std::vector<std::wstring>& names) {
    std::wstring name;
    LONG error;
    while (!(error = key.subkeyAt(static_cast<DWORD>(names.size()), name))) names.push_back(name);
    return error == ERROR_NO_MORE_ITEMS ? ERROR_SUCCESS : error;
}

LONG valueNames(const RegistryKey& key, std::vector<std::wstring>& names) {
    std::wstring name;
    LONG error;
    while (!(error = key.valueNameAt(static_cast<DWORD>(names.size()), name))) names.push_back(name);
    return error == ERROR_NO_MORE_ITEMS ? ERROR_SUCCESS : error;
}

}  // namespace win32
