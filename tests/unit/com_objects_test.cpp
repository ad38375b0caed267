// What every object of the libraries answers, whatever it is for.
#include <doctest/doctest.h>

#include "helmkit/classes.h"
#include "helmkit/keyed_list.h"
#include "tests/support/objects.h"
#include "win32/com/com_module.h"
#include "win32/com/com_server.h"

namespace {

using win32::ComPtr;

// The number of references an object has.
ULONG referencesOf(IUnknown* object) {
    object->AddRef();
    return object->Release();
}

ComPtr<IClassFactory> factoryOf(REFCLSID clsid) {
    ComPtr<IClassFactory> factory;
    REQUIRE(win32::getClassObject(helmkit::comModule(), clsid, IID_IClassFactory,
                                  reinterpret_cast<void**>(factory.out())) == S_OK);
    return factory;
}

void* const garbage = reinterpret_cast<void*>(0x55);

}  // namespace

TEST_CASE("an object is counted, and has the interfaces that it tells and no other") {
    const LONG before = win32::moduleUses();
    {
        auto list = make<helmkit::server::KeyedList>();
        IKeyedList* object = list.get();
        CHECK(win32::moduleUses() == before + 1);
        CHECK(referencesOf(object) == 1);
        for (const IID& iid : {IID_IUnknown, IID_IDispatch, IID_IKeyedList}) {
            void* found = garbage;
            REQUIRE(object->QueryInterface(iid, &found) == S_OK);
            CHECK(found == object);
            CHECK(referencesOf(object) == 2);
            CHECK(object->Release() == 1);
        }
        void* found = garbage;
        CHECK(object->QueryInterface(IID_IPersist, &found) == E_NOINTERFACE);
        CHECK(found == nullptr);
        CHECK(object->QueryInterface(IID_IUnknown, nullptr) == E_POINTER);
        ComPtr<ISupportErrorInfo> errors = list.as<ISupportErrorInfo>(IID_ISupportErrorInfo);
        REQUIRE(errors);
        CHECK(referencesOf(object) == 2);
        CHECK(errors->InterfaceSupportsErrorInfo(IID_IKeyedList) == S_OK);
        CHECK(errors->InterfaceSupportsErrorInfo(IID_IDispatch) == S_FALSE);
        CHECK(object->GetTypeInfoCount(nullptr) == E_POINTER);
    }
    CHECK(win32::moduleUses() == before);
}

TEST_CASE("names of operations are told by their numbers, unknown ones are none") {
    auto list = make<helmkit::server::KeyedList>();
    win32::BString known(L"exists"), unknown(L"NoSuchThing");
    BSTR name = known.get();
    DISPID id = 77;
    CHECK(list->GetIDsOfNames(IID_NULL, &name, 1, 0, &id) == S_OK);
    CHECK(id == 2);
    name = unknown.get();
    CHECK(list->GetIDsOfNames(IID_NULL, &name, 1, 0, &id) == DISP_E_UNKNOWNNAME);
    CHECK(id == DISPID_UNKNOWN);
    auto* info = reinterpret_cast<ITypeInfo*>(garbage);
    CHECK(list->GetTypeInfo(1, 0, &info) == DISP_E_BADINDEX);
    CHECK(info == nullptr);
    ComPtr<ITypeInfo> told;
    REQUIRE(list->GetTypeInfo(0, 0, told.out()) == S_OK);
    TYPEATTR* attributes = nullptr;
    REQUIRE(told->GetTypeAttr(&attributes) == S_OK);
    CHECK(attributes->guid == IID_IKeyedList);
    told->ReleaseTypeAttr(attributes);
    DISPPARAMS none = {};
    UINT wrong = 0;
    CHECK(list->Invoke(4711, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, &wrong) ==
          DISP_E_MEMBERNOTFOUND);
    win32::Variant count;
    CHECK(list->Invoke(3, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, &count, nullptr, &wrong) == S_OK);
    CHECK(count.vt == VT_I4);
}

TEST_CASE("a failure leaves its description and the interface that it is of") {
    auto list = make<helmkit::server::KeyedList>();
    LONG* nowhere = nullptr;
    CHECK(list->get_Count(nowhere) == E_POINTER);
    ComPtr<IErrorInfo> info;
    REQUIRE(::GetErrorInfo(0, info.out()) == S_OK);
    GUID source = {};
    REQUIRE(info->GetGUID(&source) == S_OK);
    CHECK(source == IID_IKeyedList);
    CHECK(stringFrom([&](BSTR* text) { return info->GetDescription(text); }) ==
          L"No place for the result was given");
}

TEST_CASE("a factory makes objects of its class, and locks keep the library loaded") {
    const LONG before = win32::moduleUses();
    {
        const ComPtr<IClassFactory> factory = factoryOf(CLSID_KeyedList);
        CHECK(win32::moduleUses() == before + 1);
        CHECK(factory->LockServer(TRUE) == S_OK);
        CHECK(win32::moduleUses() == before + 2);
        CHECK(factory->LockServer(FALSE) == S_OK);
        CHECK(win32::moduleUses() == before + 1);
        CHECK(factory->CreateInstance(nullptr, IID_IKeyedList, nullptr) == E_POINTER);
        ComPtr<IKeyedList> made;
        REQUIRE(factory->CreateInstance(nullptr, IID_IKeyedList, reinterpret_cast<void**>(made.out())) ==
                S_OK);
        CHECK(referencesOf(made.get()) == 1);
        void* other = garbage;
        CHECK(factory->CreateInstance(made.get(), IID_IUnknown, &other) == CLASS_E_NOAGGREGATION);
        CHECK(other == nullptr);
        other = garbage;
        CHECK(factory->QueryInterface(IID_IDispatch, &other) == E_NOINTERFACE);
        CHECK(other == nullptr);
        CHECK(factory->QueryInterface(IID_IUnknown, nullptr) == E_POINTER);
        CHECK(factory->QueryInterface(IID_IUnknown, &other) == S_OK);
        CHECK(other == factory.get());
        CHECK(factory->Release() == 1);
    }
    CHECK(win32::moduleUses() == before);
    void* none = garbage;
    CHECK(win32::getClassObject(helmkit::comModule(), IID_IUnknown, IID_IClassFactory, &none) ==
          CLASS_E_CLASSNOTAVAILABLE);
    CHECK(none == nullptr);
    none = garbage;
    CHECK(win32::getClassObject(helmkit::comModule(), CLSID_KeyedList, IID_IPersist, &none) == E_NOINTERFACE);
    CHECK(none == nullptr);
    CHECK(win32::getClassObject(helmkit::comModule(), CLSID_KeyedList, IID_IClassFactory, nullptr) ==
          E_POINTER);
    CHECK(win32::moduleUses() == before);
}
