// The objects as scripting languages and plug-ins call them: by name, with variants.
#include <doctest/doctest.h>

#include "helmkit/classes.h"
#include "helmkit/record_list.h"
#include "helmkit/registry_access.h"
#include "helmkit/system_services.h"
#include "tests/support/helmkit_classes.h"
#include "tests/support/objects.h"
#include "tests/support/registry_fixture.h"

namespace {

VARIANT byReference(VARIANT& variable) {
    VARIANT reference;
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &variable;
    return reference;
}

win32::Variant number(double value) {
    win32::Variant result;
    result.vt = VT_R8;
    result.dblVal = value;
    return result;
}

std::wstring textOf(const VARIANT& value) {
    REQUIRE(value.vt == VT_BSTR);
    return std::wstring(win32::BString::view(value.bstrVal));
}

// Calls a property or method by name and gives its result.
win32::Variant get(IDispatch* object, const wchar_t* name, std::vector<VARIANT> arguments = {}) {
    win32::BString spelled(name);
    BSTR names[] = {spelled.get()};
    DISPID id;
    REQUIRE(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id) == S_OK);
    DISPPARAMS parameters = {arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    win32::Variant result;
    REQUIRE(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                           &parameters, &result, nullptr, nullptr) == S_OK);
    return result;
}

// Bytes of the process heap that somebody holds.
size_t heapInUse() {
    size_t bytes = 0;
    PROCESS_HEAP_ENTRY entry = {};
    ::HeapLock(::GetProcessHeap());
    while (::HeapWalk(::GetProcessHeap(), &entry)) {
        if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
    }
    ::HeapUnlock(::GetProcessHeap());
    return bytes;
}

struct LateBound : RegistryFixture {
    win32::ComPtr<helmkit::server::RegistryAccess> registry = make<helmkit::server::RegistryAccess>();
    win32::Variant hive{static_cast<LONG>(0x80000002)}, key{std::wstring(L"k")}, name{std::wstring(L"v")};

    LateBound() { setString(HKEY_LOCAL_MACHINE, L"k", L"v", L"data"); }
};

}  // namespace

TEST_CASE_FIXTURE(LateBound, "results come back into variants") {
    win32::Variant data, status;
    VARIANT arguments[] = {hive, key, name, byReference(data), byReference(status)};
    win32::invoke(registry.get(), L"ReadValue", arguments, 5);
    CHECK(textOf(data) == L"data");
    CHECK(status.vt == VT_I4);
    CHECK(status.lVal == 0);
    // What the variants held before is freed and replaced.
    VARIANT missing[] = {hive, key, key, byReference(data), byReference(status)};
    win32::invoke(registry.get(), L"readvalue", missing, 5);
    CHECK(textOf(data) == L"");
    CHECK(status.lVal == 2);
}

TEST_CASE_FIXTURE(LateBound, "a call leaves no memory behind") {
    auto call = [&] {
        win32::Variant data, status;
        VARIANT arguments[] = {hive, key, name, byReference(data), byReference(status)};
        win32::invoke(registry.get(), L"ReadValue", arguments, 5);
    };
    call();  // what it keeps for good
    const int calls = 500;
    const size_t before = heapInUse();
    for (int i = 0; i < calls; ++i) call();
    CHECK(heapInUse() < before + calls);
}

TEST_CASE_FIXTURE(LateBound, "results come back into typed variables, converted to their type") {
    win32::BString text(L"old");
    SHORT status = 99;
    VARIANT textReference, statusReference;
    textReference.vt = VT_BYREF | VT_BSTR;
    BSTR raw = text.release();
    textReference.pbstrVal = &raw;
    statusReference.vt = VT_BYREF | VT_I2;
    statusReference.piVal = &status;
    VARIANT arguments[] = {hive, key, name, textReference, statusReference};
    win32::invoke(registry.get(), L"ReadValue", arguments, 5);
    CHECK(std::wstring(raw) == L"data");
    CHECK(status == 0);
    ::SysFreeString(raw);
}

TEST_CASE_FIXTURE(LateBound, "a hive is taken as any kind of number") {
    win32::Variant data, status, keyCopy(std::wstring(L"k"));
    win32::Variant kinds[] = {number(2147483650.0), number(-2147483646.0),
                              win32::Variant(std::wstring(L"-2147483646"))};
    for (win32::Variant& kind : kinds) {
        VARIANT arguments[] = {kind, byReference(keyCopy), name, byReference(data), byReference(status)};
        win32::invoke(registry.get(), L"ReadValue", arguments, 5);
        CHECK(textOf(data) == L"data");
    }
    VARIANT tooLarge[] = {number(4294967296.0), key, name, byReference(data), byReference(status)};
    CHECK_THROWS_AS(win32::invoke(registry.get(), L"ReadValue", tooLarge, 5), win32::Error);
}

TEST_CASE_FIXTURE(LateBound, "in and out arguments go both ways, and may be expressions") {
    win32::Variant text, hiveVariable = number(2147483650.0), keyVariable(std::wstring(L"k"));
    VARIANT arguments[] = {byReference(hiveVariable), byReference(keyVariable), byReference(text)};
    win32::invoke(registry.get(), L"ExportKey", arguments, 3);
    CHECK(textOf(text) == L"\r\n[HKEY_LOCAL_MACHINE\\k]\r\n\"v\"=\"data\"\r\n");
    CHECK(hiveVariable.vt == VT_I4);
    CHECK(textOf(keyVariable) == L"k");
    VARIANT expressions[] = {hive, key, byReference(text)};
    win32::invoke(registry.get(), L"ExportKey", expressions, 3);
    CHECK(textOf(text) == L"\r\n[HKEY_LOCAL_MACHINE\\k]\r\n\"v\"=\"data\"\r\n");
}

TEST_CASE_FIXTURE(LateBound, "lists come back as objects that can be walked") {
    win32::Variant names;
    VARIANT arguments[] = {hive, key, byReference(names)};
    win32::invoke(registry.get(), L"EnumValues", arguments, 3);
    REQUIRE(names.vt == VT_DISPATCH);
    CHECK(get(names.pdispVal, L"Count").lVal == 1);
    CHECK(textOf(get(names.pdispVal, L"Item", {win32::Variant(LONG{1})})) == L"v");
    CHECK(textOf(get(names.pdispVal, L"Item", {number(1)})) == L"v");
    CHECK(get(names.pdispVal, L"Exists", {name}).boolVal == VARIANT_TRUE);
    win32::Variant walk;
    DISPPARAMS none = {};
    REQUIRE(names.pdispVal->Invoke(DISPID_NEWENUM, IID_NULL, 0, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none,
                                   &walk, nullptr, nullptr) == S_OK);
    CHECK(walk.vt == VT_UNKNOWN);
}

TEST_CASE_FIXTURE(LateBound, "failures come as exceptions with a description") {
    win32::Variant data, status;
    VARIANT arguments[] = {win32::Variant(LONG{5}), key, name, byReference(data), byReference(status)};
    try {
        win32::invoke(registry.get(), L"ReadValue", arguments, 5);
        FAIL("nothing was thrown");
    } catch (const win32::Error& error) {
        CHECK(error.number == E_INVALIDARG);
        CHECK(error.description == L"Not a registry hive: 5");
    }
    CHECK_THROWS_AS(win32::invoke(registry.get(), L"NoSuchThing", nullptr, 0), win32::Error);
    CHECK_THROWS_AS(win32::invoke(registry.get(), L"ReadValue", arguments, 2), win32::Error);
}

TEST_CASE_FIXTURE(LateBound, "byte arrays and messages") {
    auto system = make<helmkit::server::SystemServices>();
    win32::Variant nothing;
    CHECK(get(system.get(), L"IsEmptyBytes", {byReference(nothing)}).boolVal == VARIANT_TRUE);
    win32::Variant bytes;
    bytes.parray = ::SafeArrayCreateVector(VT_UI1, 0, 3);
    bytes.vt = VT_ARRAY | VT_UI1;
    CHECK(get(system.get(), L"IsEmptyBytes", {byReference(bytes)}).boolVal == VARIANT_FALSE);
    win32::Variant values, result;
    values.parray = ::SafeArrayCreateVector(VT_VARIANT, 0, 1);
    values.vt = VT_ARRAY | VT_VARIANT;
    LONG first = 0;
    ::SafeArrayPutElement(values.parray, &first, &name);
    win32::Variant text(std::wstring(L"<%1>"));
    VARIANT arguments[] = {text, byReference(values), byReference(result)};
    win32::invoke(system.get(), L"FormatMessage", arguments, 3);
    CHECK(textOf(result) == L"<v>");
}

TEST_CASE_FIXTURE(LateBound, "records and their fields") {
    auto list = make<helmkit::server::RecordList>();
    win32::Variant record = get(list.get(), L"AddRecord");
    VARIANT arguments[] = {name, number(12)};
    win32::invoke(record.pdispVal, L"SetField", arguments, 2);
    win32::Variant field = get(record.pdispVal, L"Field", {name});
    CHECK(get(field.pdispVal, L"Value").lVal == 12);
    CHECK(textOf(get(field.pdispVal, L"Name")) == L"v");
}

std::wstring toldWithError() {
    win32::ComPtr<IErrorInfo> info;
    win32::BString description;
    REQUIRE(::GetErrorInfo(0, info.out()) == S_OK);
    REQUIRE(info->GetDescription(description.out()) == S_OK);
    return description.text();
}

TEST_CASE("the services that callers share are let go of") {
    HelmkitClasses classes;
    helmkit::releaseSharedServices();
    const LONG usesBefore = win32::moduleUses();
    helmkit::fileServices();
    const LONG usesOfOne = win32::moduleUses();
    helmkit::systemServices();
    CHECK(usesOfOne > usesBefore);
    CHECK(win32::moduleUses() > usesOfOne);
    helmkit::releaseSharedServices();
    CHECK(win32::moduleUses() == usesBefore);
}

TEST_CASE("class factories make each class, count their uses and refuse aggregation") {
    LONG usesBefore = win32::moduleUses();
    const win32::ComModule& module = helmkit::comModule();
    for (size_t i = 0; i < module.count; ++i) {
        win32::ComPtr<IClassFactory> factory;
        REQUIRE(win32::getClassObject(module, *module.classes[i].clsid, IID_IClassFactory,
                                      reinterpret_cast<void**>(factory.out())) == S_OK);
        win32::ComPtr<IDispatch> object;
        REQUIRE(factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(object.out())) ==
                S_OK);
        CHECK(win32::canUnloadNow() == S_FALSE);
        UINT count = 0;
        CHECK(object->GetTypeInfoCount(&count) == S_OK);
        CHECK(count == 1);
        win32::ComPtr<ITypeInfo> info, none;
        CHECK(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.out()) == S_OK);
        CHECK(info);
        CHECK(object->GetTypeInfo(1, LOCALE_USER_DEFAULT, none.out()) == DISP_E_BADINDEX);
        CHECK_FALSE(none);
        CHECK(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr) == E_POINTER);
        void* other = nullptr;
        CHECK(factory->CreateInstance(object.get(), IID_IUnknown, &other) == CLASS_E_NOAGGREGATION);
        CHECK(factory->CreateInstance(nullptr, IID_IPersist, &other) == E_NOINTERFACE);
        CHECK(toldWithError() == L"The object has no such interface");
        CHECK(other == nullptr);
    }
    CHECK(win32::moduleUses() == usesBefore);
    void* none = nullptr;
    CHECK(win32::getClassObject(module, IID_IUnknown, IID_IClassFactory, &none) == CLASS_E_CLASSNOTAVAILABLE);
}
