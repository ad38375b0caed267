#define DOCTEST_CONFIG_IMPLEMENT
#include <doctest/doctest.h>

#include <iterator>

#include "helmkit.h"
#include "qlncustom.h"
#include "tests/support/temp_folder.h"
#include "win32/base/handle.h"
#include "win32/com/com.h"
#include "win32/system/system.h"

namespace {

struct NamedClass {
    const wchar_t* progId;
    const CLSID* clsid;
    const IID* iid;
};

const NamedClass classes[] = {
    {L"Helmkit.LogWriter", &CLSID_LogWriter, &IID_ILogWriter},
    {L"Helmkit.RegistryAccess", &CLSID_RegistryAccess, &IID_IRegistryAccess},
    {L"Helmkit.FileServices", &CLSID_FileServices, &IID_IFileServices},
    {L"Helmkit.SystemServices", &CLSID_SystemServices, &IID_ISystemServices},
    {L"Helmkit.KeyedList", &CLSID_KeyedList, &IID_IKeyedList},
    {L"Helmkit.RecordList", &CLSID_RecordList, &IID_IRecordList},
    {L"Helmkit.Record", &CLSID_Record, &IID_IRecord},
    {L"QLNCustom.CCustom2", &CLSID_CCustom2, &IID_ICCustom2},
};

win32::ComPtr<IDispatch> createByName(const wchar_t* progId) {
    CLSID clsid;
    win32::check(::CLSIDFromProgID(progId, &clsid));
    return win32::create<IDispatch>(clsid, IID_IDispatch);
}

VARIANT byReference(IDispatch** object) {
    VARIANT argument;
    argument.vt = VT_BYREF | VT_DISPATCH;
    argument.ppdispVal = object;
    return argument;
}

ULONG references(IUnknown* object) {
    object->AddRef();
    return object->Release();
}

bool isRegistered(const wchar_t* progId) {
    HKEY key = nullptr;
    if (::RegOpenKeyExW(HKEY_CLASSES_ROOT, progId, 0, KEY_READ, &key)) return false;
    ::RegCloseKey(key);
    return true;
}

// A string below HKEY_CLASSES_ROOT as it is stored, with its terminator.
std::wstring stored(const std::wstring& path, const wchar_t* name = L"") {
    HKEY opened = nullptr;
    if (::RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, &opened)) return L"no key " + path;
    win32::OwnedKey key(opened);
    wchar_t text[300] = L"";
    DWORD type = 0, size = sizeof text;
    if (::RegQueryValueExW(opened, name, nullptr, &type, reinterpret_cast<BYTE*>(text), &size) ||
        type != REG_SZ || size == 0 || text[size / 2 - 1])
        return L"no string in " + path;
    return text;
}

std::wstring guidText(REFGUID guid) {
    wchar_t text[40] = L"";
    ::StringFromGUID2(guid, text, 40);
    return text;
}

// What a class of a library is registered with; the file is the library's.
void checkRegistered(const NamedClass& c, const wchar_t* dll, REFGUID library) {
    const std::wstring file = win32::moduleFolder(nullptr) + L'\\' + dll, name = c.progId,
                       key = L"CLSID\\" + guidText(*c.clsid);
    const bool isSame = stored(key) == name && stored(key + L"\\InprocServer32") == file &&
                        stored(key + L"\\InprocServer32", L"ThreadingModel") == L"Apartment" &&
                        stored(key + L"\\ProgID") == name &&
                        stored(key + L"\\TypeLib") == guidText(library) && stored(name) == name &&
                        stored(name + L"\\CLSID") == guidText(*c.clsid) &&
                        stored(L"TypeLib\\" + guidText(library) + L"\\2.1\\0\\" +
                               (sizeof(void*) == 8 ? L"win64" : L"win32")) == file;
    CHECK(isSame);
}

using DllFunction = HRESULT(WINAPI*)();

DllFunction exported(HMODULE module, const char* name) {
    return reinterpret_cast<DllFunction>(reinterpret_cast<void*>(::GetProcAddress(module, name)));
}

win32::OwnedModule load(const wchar_t* name) {
    win32::OwnedModule module(::LoadLibraryW((win32::moduleFolder(nullptr) + L'\\' + name).c_str()));
    REQUIRE(module);
    return module;
}

// The whole of HKEY_CLASSES_ROOT below a key, as text.
std::wstring snapshot(HKEY root, const std::wstring& path) {
    std::wstring text;
    HKEY opened = nullptr;
    if (::RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &opened)) return text;
    win32::OwnedKey key(opened);
    wchar_t name[300];
    for (DWORD i = 0;; ++i) {
        DWORD length = 300;
        if (::RegEnumKeyExW(opened, i, name, &length, nullptr, nullptr, nullptr, nullptr)) return text;
        text += std::wstring(name, length) + L'\n' + snapshot(opened, name);
    }
}

std::wstring classesSnapshot() {
    std::wstring text;
    for (const wchar_t* part : {L"CLSID", L"TypeLib", L"Interface"})
        text += snapshot(HKEY_CLASSES_ROOT, part);
    for (const NamedClass& c : classes) text += isRegistered(c.progId) ? c.progId : L"";
    return text;
}

}  // namespace

TEST_CASE("every class is made by name and by identifier, unregistered") {
    for (const NamedClass& c : classes) {
        CHECK_FALSE(isRegistered(c.progId));
        CLSID clsid;
        REQUIRE(::CLSIDFromProgID(c.progId, &clsid) == S_OK);
        // Without registration a name may lead to the class under an identifier of the system's own.
        CHECK(win32::create<IDispatch>(clsid, IID_IDispatch).as<IUnknown>(*c.iid));
        CHECK(win32::create<IDispatch>(*c.clsid, IID_IDispatch).as<IUnknown>(*c.iid));
    }
}

TEST_CASE("the default plug-in leaves a logger, and none, as it is") {
    auto plugin = createByName(L"QLNCustom.CCustom2");
    auto logger = createByName(L"Helmkit.LogWriter");
    ULONG before = references(logger.get());
    IDispatch* held = logger.get();
    VARIANT argument = byReference(&held);
    win32::invoke(plugin.get(), L"Init", &argument, 1);
    CHECK(held == logger.get());
    CHECK(references(logger.get()) == before);
    held = nullptr;
    win32::invoke(plugin.get(), L"Init", &argument, 1);
    CHECK(held == nullptr);
}

TEST_CASE("operations are called by name, failures come with their description") {
    auto registry = createByName(L"Helmkit.RegistryAccess");
    win32::Variant data, status, hive(static_cast<LONG>(0x80000001)), key(std::wstring(L"no such key"));
    VARIANT arguments[] = {hive, key, key, {}, {}};
    arguments[3].vt = arguments[4].vt = VT_BYREF | VT_VARIANT;
    arguments[3].pvarVal = &data;
    arguments[4].pvarVal = &status;
    win32::invoke(registry.get(), L"ReadValue", arguments, 5);
    CHECK(data.vt == VT_BSTR);
    CHECK(status.lVal == 2);
    arguments[0] = win32::Variant(LONG{1});
    try {
        win32::invoke(registry.get(), L"ReadValue", arguments, 5);
        FAIL("nothing was thrown");
    } catch (const win32::Error& error) {
        CHECK(error.number == E_INVALIDARG);
        CHECK(error.description == L"Not a registry hive: 1");
    }
}

TEST_CASE("a plug-in may put a logger in place that offers nothing but a call by name") {
    std::wstring folder = win32::moduleFolder(nullptr) + L"\\..\\replacing_plugin\\";
    std::wstring log = folder + L"replaced.log";
    ::DeleteFileW(log.c_str());
    {
        win32::OwnedModule module = load(L"..\\replacing_plugin\\QLNCustom.dll");
        using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
        auto getClassObject = reinterpret_cast<GetClassObject>(
            reinterpret_cast<void*>(::GetProcAddress(module.get(), "DllGetClassObject")));
        win32::ComPtr<IClassFactory> factory;
        REQUIRE(getClassObject(CLSID_CCustom2, IID_IClassFactory, reinterpret_cast<void**>(factory.out())) ==
                S_OK);
        win32::ComPtr<IDispatch> plugin;
        REQUIRE(factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(plugin.out())) ==
                S_OK);
        auto given = createByName(L"Helmkit.LogWriter");
        IDispatch* held = given.get();
        held->AddRef();
        VARIANT argument = byReference(&held);
        win32::invoke(plugin.get(), L"Init", &argument, 1);
        auto logger = win32::ComPtr<IDispatch>::adopt(held);
        CHECK(logger.get() != given.get());
        CHECK(references(given.get()) == 1);
        CHECK_FALSE(logger.as<ILogWriter>(IID_ILogWriter));
        win32::Variant code(LONG{7}), text(std::wstring(L"caf\u00E9")), level(LONG{4}),
            source(std::wstring(L"s"));
        VARIANT arguments[] = {code, text, level, source};
        win32::invoke(logger.get(), L"WriteLog", arguments, 4);
    }
    CHECK(TempFolder::read(log) == "4|s|7|caf\xC3\xA9\r\n5||0|plug-in released\r\n");
    ::DeleteFileW(log.c_str());
}

TEST_CASE("a library can be unloaded once its objects are gone") {
    win32::OwnedModule module = load(L"Helmkit.dll");
    auto canUnload = exported(module.get(), "DllCanUnloadNow");
    CHECK(canUnload() == S_OK);
    {
        auto list = createByName(L"Helmkit.KeyedList");
        CHECK(canUnload() == S_FALSE);
    }
    CHECK(canUnload() == S_OK);
}

TEST_CASE("registering names every class, unregistering leaves no trace") {
    std::wstring before = classesSnapshot();
    REQUIRE(before.find(L"Helmkit") == std::wstring::npos);
    for (const wchar_t* name : {L"Helmkit.dll", L"QLNCustom.dll"}) {
        win32::OwnedModule module = load(name);
        REQUIRE(exported(module.get(), "DllRegisterServer")() == S_OK);
        REQUIRE(exported(module.get(), "DllRegisterServer")() == S_OK);
    }
    for (const NamedClass& c : classes) {
        CHECK(isRegistered(c.progId));
        const bool isPlugin = *c.clsid == CLSID_CCustom2;
        checkRegistered(c, isPlugin ? L"QLNCustom.dll" : L"Helmkit.dll",
                        isPlugin ? LIBID_QLNCustom : LIBID_Helmkit);
    }
    bool isChanged = classesSnapshot() != before;
    CHECK(isChanged);
    for (const wchar_t* name : {L"Helmkit.dll", L"QLNCustom.dll"}) {
        win32::OwnedModule module = load(name);
        REQUIRE(exported(module.get(), "DllUnregisterServer")() == S_OK);
        CHECK(exported(module.get(), "DllUnregisterServer")() == S_OK);
    }
    bool isAsBefore = classesSnapshot() == before;
    CHECK(isAsBefore);
}

int main(int count, char** arguments) {
    win32::ComApartment apartment;
    doctest::Context context(count, arguments);
    return context.run();
}
