#include "win32/com/com_registration.h"

// Classes are registered under HKEY_CLASSES_ROOT, in the own view of the registry: 32-bit and 64-bit
// classes are different ones.
#include "win32/base/utf16_bytes.h"
#include "win32/com/com_server.h"
#include "win32/registry/registry_tree.h"
#include "win32/system/system.h"

namespace win32 {

namespace {

std::wstring guidText(const GUID& guid) {
    wchar_t text[39];
    ::StringFromGUID2(guid, text, 39);
    return text;
}

std::wstring classKey(const ComClass& c) {
    return L"CLSID\\" + guidText(*c.clsid);
}

void setString(const std::wstring& path, const std::wstring& name, const std::wstring& text) {
    RegistryKey key;
    LONG error = key.create(HKEY_CLASSES_ROOT, path, KEY_WRITE, RegistryView::own);
    if (!error) error = key.set(name, REG_SZ, bytesOf(text + L'\0'));
    if (error) raiseWin32(error, path);
}

void registerClass(const ComModule& module, const ComClass& c, const std::wstring& file) {
    setString(classKey(c), L"", c.progId);
    setString(classKey(c) + L"\\InprocServer32", L"", file);
    setString(classKey(c) + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
    setString(classKey(c) + L"\\ProgID", L"", c.progId);
    setString(classKey(c) + L"\\TypeLib", L"", guidText(*module.library));
    setString(c.progId, L"", c.progId);
    setString(std::wstring(c.progId) + L"\\CLSID", L"", guidText(*c.clsid));
}

void deleteIfPresent(const std::wstring& path) {
    LONG error = deleteKeyTree(HKEY_CLASSES_ROOT, path, RegistryView::own);
    if (error && !isAbsent(error)) raiseWin32(error, path);
}

void unregisterTypeLibrary(const ComModule& module) {
    std::wstring path = L"TypeLib\\" + guidText(*module.library);
    RegistryKey registered;
    if (isAbsent(registered.open(HKEY_CLASSES_ROOT, path, KEY_READ, RegistryView::own))) return;
    registered.close();
    SYSKIND system = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
    check(::UnRegisterTypeLib(*module.library, module.libraryMajor, module.libraryMinor, LOCALE_NEUTRAL,
                              system));
    // What stands under the library's identifier is ours alone; some systems leave an empty key behind.
    deleteIfPresent(path);
}

}  // namespace

HRESULT registerModule(const ComModule& module) noexcept {
    HRESULT outcome = guarded(GUID_NULL, [&] {
        std::wstring file = modulePath(thisModule());
        for (size_t i = 0; i < module.count; ++i) registerClass(module, module.classes[i], file);
        BString path(file);
        check(::RegisterTypeLib(moduleTypeLibrary().get(), path.get(), nullptr));
    });
    if (FAILED(outcome)) unregisterModule(module);
    return outcome;
}

HRESULT unregisterModule(const ComModule& module) noexcept {
    return guarded(GUID_NULL, [&] {
        for (size_t i = 0; i < module.count; ++i) {
            deleteIfPresent(classKey(module.classes[i]));
            deleteIfPresent(module.classes[i].progId);
        }
        unregisterTypeLibrary(module);
    });
}

}  // namespace win32
