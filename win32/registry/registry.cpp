#include "win32/registry/registry.h"

#include "win32/base/flavour.h"
#include "win32/registry/registry_buffers.h"
#include "win32/system/system.h"

namespace win32 {

namespace {

const REGSAM wow64Key64 = 0x0100;  // KEY_WOW64_64KEY, newer than the headers asked for

// The flag is an error on Windows NT 4 and 2000, so only a redirected program passes it.
REGSAM viewFlag(RegistryView view) {
    return view == RegistryView::whole && isRedirected() ? wow64Key64 : 0;
}

// Refuses a name that stands for several of a list, in the letters that the calls hand out. A list that
// cannot be read to its end is refused, too.
template <class NameAt>
LONG refuseSeveral(const std::wstring& name, NameAt nameAt) {
    std::wstring other;
    LONG error;
    int count = 0;
    for (DWORD i = 0; !(error = nameAt(i, other)); ++i) count += sameIgnoringCase(name, other);
    if (error != ERROR_NO_MORE_ITEMS) return error;
    return count > 1 ? ERROR_INVALID_NAME : ERROR_SUCCESS;
}

std::wstring withoutLastBackslashes(std::wstring path) {
    while (!path.empty() && path.back() == L'\\') path.pop_back();
    return path;
}

LONG subkeyNameAt(HKEY key, DWORD position, std::wstring& name) {
    return withFlavour([&]<class F>(F f) {
        return readName<F>(name, [&](auto* text, DWORD* length) {
            return f.regEnumKeyEx(key, position, text, length, nullptr, nullptr, nullptr, nullptr);
        });
    });
}

// What the system calls the key that a handle is open on, as the bytes of a name; empty where it does not
// tell.
std::string nameOf(HKEY key) {
    using NtQueryKey = LONG(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*);
    static const auto ntQueryKey = systemProcedure<NtQueryKey>(L"ntdll.dll", "NtQueryKey");
    const int keyNameInformation = 3;
    std::string name(1 << 16, '\0');
    ULONG size = 0;
    const bool isTold = ntQueryKey && ntQueryKey(key, keyNameInformation, name.data(),
                                                 static_cast<ULONG>(name.size()), &size) >= 0;
    name.resize(isTold ? size : 0);
    return name;
}

LONG openAs(OwnedKey& key, HKEY root, const std::wstring& path, REGSAM access, DWORD options);

LONG checkLastName(HKEY root, const std::wstring& path, REGSAM view) {
    const size_t end = path.rfind(L'\\');
    OwnedKey parent;
    // Where the parent cannot be opened, opening the key itself tells why.
    if (end != std::wstring::npos && openAs(parent, root, path.substr(0, end), KEY_READ | view, 0))
        return ERROR_SUCCESS;
    HKEY key = parent ? parent.get() : root;
    return refuseSeveral(path.substr(end + 1),
                         [&](DWORD i, std::wstring& other) { return subkeyNameAt(key, i, other); });
}

// In the ANSI flavour a question mark in a listed name may stand for a character that the code page lacks:
// the key that it opens would be another one.
LONG refuseAmbiguousMarks(HKEY root, const std::wstring& path, REGSAM access) {
    const size_t mark = flavour() == Flavour::wide ? std::wstring::npos : path.rfind(L'?');
    if (mark == std::wstring::npos) return ERROR_SUCCESS;
    return checkLastName(root, path.substr(0, path.find(L'\\', mark)), access & wow64Key64);
}

LONG openAs(OwnedKey& key, HKEY root, const std::wstring& path, REGSAM access, DWORD options) {
    std::wstring cut = withoutLastBackslashes(path);
    key.reset();
    if (!isExactName(cut)) return ERROR_INVALID_NAME;
    if (LONG refused = refuseAmbiguousMarks(root, cut, access)) return refused;
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
    LONG error = openAs(key_, root, path, access | viewFlag(view), options);
    isLink_ = !error && options && leadsElsewhere(root, path, view);
    return error;
}

LONG RegistryKey::openPlace(HKEY root, const std::wstring& path, REGSAM access, RegistryView view) {
    LONG error = openLink(root, path, access | KEY_QUERY_VALUE, view);
    if (!error && isLink_) error = linkRefused;
    if (error) close();
    return error;
}

LONG RegistryKey::createPlace(HKEY root, const std::wstring& path, REGSAM access, RegistryView view) {
    LONG error = openPlace(root, path, access, view);
    return isAbsent(error) ? create(root, path, access, view) : error;
}

LONG RegistryKey::create(HKEY root, const std::wstring& path, REGSAM access, RegistryView view) {
    std::wstring cut = withoutLastBackslashes(path);
    key_.reset();
    if (!isExactName(cut)) return ERROR_INVALID_NAME;
    if (LONG refused = refuseAmbiguousMarks(root, cut, access | viewFlag(view))) return refused;
    return withFlavour([&](auto f) {
        HKEY created = nullptr;
        LONG error = f.regCreateKeyEx(root, f.in(cut), DWORD{0}, nullptr, DWORD{REG_OPTION_NON_VOLATILE},
                                      access | viewFlag(view), nullptr, &created, nullptr);
        if (error == ERROR_SUCCESS) key_.reset(created);
        return error;
    });
}

LONG RegistryKey::subkeyAt(DWORD position, std::wstring& name) const {
    return subkeyNameAt(get(), position, name);
}

LONG RegistryKey::valueNameAt(DWORD position, std::wstring& name) const {
    return withFlavour([&]<class F>(F f) {
        return readName<F>(name, [&](auto* text, DWORD* length) {
            return f.regEnumValue(get(), position, text, length, nullptr, nullptr, nullptr, nullptr);
        });
    });
}

LONG RegistryKey::valueAt(DWORD position, std::wstring& name, RegistryValue& value) const {
    return withFlavour([&]<class F>(F f) {
        return readData(value, f.isWide, [&](BYTE* bytes, DWORD* size, DWORD* type) {
            DWORD room = *size;
            return readName<F>(name, [&](auto* text, DWORD* length) {
                *size = room;
                return f.regEnumValue(get(), position, text, length, nullptr, type, bytes, size);
            });
        });
    });
}

LONG RegistryKey::query(const std::wstring& name, RegistryValue& value) const {
    if (LONG refused = checkName(name)) return refused;
    return withFlavour([&]<class F>(F f) {
        const auto spelled = f.in(name);
        return readData(value, f.isWide, [&](BYTE* bytes, DWORD* size, DWORD* type) {
            const typename F::Char* characters = spelled;
            return f.regQueryValueEx(get(), characters, nullptr, type, bytes, size);
        });
    });
}

LONG RegistryKey::set(const std::wstring& name, DWORD type, const std::string& data) const {
    if (LONG refused = checkName(name)) return refused;
    return withFlavour([&]<class F>(F f) {
        std::string stored = f.isWide ? data : ansiData(type, data);
        return f.regSetValueEx(get(), f.in(name), DWORD{0}, type,
                               reinterpret_cast<const BYTE*>(stored.data()),
                               static_cast<DWORD>(stored.size()));
    });
}

LONG RegistryKey::deleteValue(const std::wstring& name) const {
    if (LONG refused = checkName(name, AmbiguousNames::all)) return refused;
    return withFlavour([&](auto f) { return f.regDeleteValue(get(), f.in(name)); });
}

// An ordinary key may bear the value of a link, too: that one is where its path leads.
bool RegistryKey::leadsElsewhere(HKEY root, const std::wstring& path, RegistryView view) const {
    RegistryValue target;
    if (query(L"SymbolicLinkValue", target) || target.type != REG_LINK) return false;
    RegistryKey followed;
    if (followed.open(root, path, KEY_QUERY_VALUE, view)) return true;
    const std::string name = nameOf(get());
    return name.empty() || name != nameOf(followed.get());
}

// The code page may put a letter, not only a question mark, in the place of one that it lacks. Asking the
// whole list each time would make reading a key's values take quadratic time, so that is done only before
// deleting.
LONG RegistryKey::checkName(const std::wstring& name, AmbiguousNames refused) const {
    if (!isExactName(name)) return ERROR_INVALID_NAME;
    if (flavour() == Flavour::wide) return ERROR_SUCCESS;
    if (refused == AmbiguousNames::questionMarkOnly && name.find(L'?') == std::wstring::npos)
        return ERROR_SUCCESS;
    return refuseSeveral(name, [&](DWORD i, std::wstring& other) { return valueNameAt(i, other); });
}

LONG checkSubkey(HKEY root, const std::wstring& path, RegistryView view) {
    return flavour() == Flavour::wide ? ERROR_SUCCESS : checkLastName(root, path, viewFlag(view));
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
