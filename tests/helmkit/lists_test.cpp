#include <cstring>
#include <functional>

#include <doctest/doctest.h>

#include "helmkit/client/records.h"
#include "helmkit/client/registry_access.h"
#include "helmkit/file_services.h"
#include "helmkit/keyed_list.h"
#include "helmkit/record_list.h"
#include "helmkit/registry_access.h"
#include "support/request_parameters.h"
#include "tests/support/helmkit_classes.h"
#include "tests/support/objects.h"
#include "tests/support/processor_time.h"
#include "win32/com/com_module.h"

namespace {

using Names = std::vector<std::wstring>;

struct Keyed {
    win32::ComPtr<helmkit::server::KeyedList> list = make<helmkit::server::KeyedList>();

    void add(const std::wstring& item, const std::wstring& key) {
        REQUIRE(list->Add(win32::Variant(item), bs(key).get()) == S_OK);
    }
    bool has(const std::wstring& key) {
        VARIANT_BOOL present = VARIANT_FALSE;
        REQUIRE(list->Exists(bs(key).get(), &present) == S_OK);
        return present == VARIANT_TRUE;
    }
    template <class Asked>
    std::wstring item(Asked asked) {
        win32::Variant found;
        REQUIRE(list->get_Item(win32::Variant(asked), found.out()) == S_OK);
        REQUIRE(found.vt == VT_BSTR);
        return std::wstring(win32::BString::view(found.bstrVal));
    }
    LONG count() {
        LONG count = -1;
        REQUIRE(list->get_Count(&count) == S_OK);
        return count;
    }
};

template <class List>
win32::ComPtr<IEnumVARIANT> walkOf(List* list) {
    win32::ComPtr<IUnknown> unknown;
    REQUIRE(list->get__NewEnum(unknown.out()) == S_OK);
    return unknown.as<IEnumVARIANT>(IID_IEnumVARIANT);
}

template <class Value>
win32::Variant variant(Value value) {
    return win32::Variant(value);
}

struct Records {
    win32::ComPtr<helmkit::server::RecordList> list = make<helmkit::server::RecordList>();

    win32::ComPtr<IRecord> add() {
        win32::ComPtr<IRecord> record;
        REQUIRE(list->AddRecord(record.out()) == S_OK);
        return record;
    }
    static win32::ComPtr<IField> field(const win32::ComPtr<IRecord>& record, const std::wstring& name) {
        win32::ComPtr<IField> found;
        REQUIRE(record->Field(bs(name).get(), found.out()) == S_OK);
        return found;
    }
    static std::wstring text(const win32::ComPtr<IField>& field) {
        win32::Variant value;
        REQUIRE(field->get_Value(value.out()) == S_OK);
        REQUIRE(value.vt == VT_BSTR);
        return std::wstring(win32::BString::view(value.bstrVal));
    }
    static void set(const win32::ComPtr<IRecord>& record, const std::wstring& name,
                    const std::wstring& value) {
        REQUIRE(record->SetField(bs(name).get(), win32::Variant(value)) == S_OK);
    }
};

}  // namespace

TEST_CASE_FIXTURE(Keyed, "items are found by key and by position, in the order of adding") {
    add(L"C:\\b.exe", L"b");
    add(L"C:\\a.exe", L"a");
    CHECK(count() == 2);
    CHECK(item(std::wstring(L"a")) == L"C:\\a.exe");
    CHECK(item(LONG{1}) == L"C:\\b.exe");
    CHECK(item(LONG{2}) == L"C:\\a.exe");
    CHECK(itemsOf(list.get()) == Names{L"C:\\b.exe", L"C:\\a.exe"});
}

TEST_CASE_FIXTURE(Keyed, "keys are told apart by case and by what follows a NUL") {
    add(L"1", L"Key");
    CHECK(has(L"Key"));
    CHECK_FALSE(has(L"key"));
    CHECK_FALSE(has(std::wstring(L"Key\0", 4)));
    add(L"2", std::wstring(L"Key\0", 4));
    CHECK(count() == 2);
    add(L"3", L"");
    CHECK(item(std::wstring()) == L"3");
}

TEST_CASE_FIXTURE(Keyed, "under a key that is present the first item stays") {
    add(L"first", L"k");
    add(L"second", L"k");
    CHECK(count() == 1);
    CHECK(item(std::wstring(L"k")) == L"first");
}

TEST_CASE_FIXTURE(Keyed, "a list of names shows every name, also an equal one") {
    for (const wchar_t* name : {L"a", L"?", L"?"}) list->append(name);
    CHECK(count() == 3);
    CHECK(itemsOf(list.get()) == Names{L"a", L"?", L"?"});
    CHECK(has(L"?"));
    add(L"x", L"?");
    CHECK(count() == 3);
}

TEST_CASE_FIXTURE(Keyed, "what is not in the list is an error") {
    add(L"x", L"k");
    win32::Variant item;
    CHECK(list->get_Item(variant(std::wstring(L"no")), item.out()) == E_INVALIDARG);
    for (LONG position : {0L, 2L, -1L})
        CHECK(list->get_Item(variant(position), item.out()) == DISP_E_BADINDEX);
    CHECK(list->get_Item(variant(LONG{1}), nullptr) == E_POINTER);
}

TEST_CASE_FIXTURE(Keyed, "the place for an item may hold anything before, and is empty where there is none") {
    add(L"x", L"k");
    VARIANT place;
    for (const wchar_t* key : {L"k", L"no"}) {
        std::memset(&place, 0x5A, sizeof place);
        const bool isThere = list->get_Item(variant(std::wstring(key)), &place) == S_OK;
        CHECK(isThere == (*key == L'k'));
        CHECK(place.vt == (isThere ? VT_BSTR : VT_EMPTY));
        ::VariantClear(&place);
    }
}

TEST_CASE_FIXTURE(Keyed, "items of any kind are kept, references by what they lead to") {
    LONG number = 7;
    VARIANT reference;
    reference.vt = VT_I4 | VT_BYREF;
    reference.plVal = &number;
    REQUIRE(list->Add(reference, bs(L"n").get()) == S_OK);
    number = 8;
    win32::Variant item;
    REQUIRE(list->get_Item(variant(std::wstring(L"n")), item.out()) == S_OK);
    CHECK(item.vt == VT_I4);
    CHECK(item.lVal == 7);
}

TEST_CASE_FIXTURE(Keyed, "the walk serves many at once, skips, starts again and is copied") {
    for (int i = 1; i <= 5; ++i) add(std::to_wstring(i), std::to_wstring(i));
    win32::ComPtr<IUnknown> unknown;
    REQUIRE(list->get__NewEnum(unknown.out()) == S_OK);
    auto walk = unknown.as<IEnumVARIANT>(IID_IEnumVARIANT);
    LONG uses = win32::moduleUses();
    list = {};
    CHECK(win32::moduleUses() == uses);  // the walk keeps the list
    VARIANT items[4];
    ULONG fetched = 9;
    REQUIRE(walk->Next(4, items, &fetched) == S_OK);
    CHECK(fetched == 4);
    CHECK(std::wstring(items[3].bstrVal) == L"4");
    for (VARIANT& item : items) ::VariantClear(&item);
    win32::ComPtr<IEnumVARIANT> copy;
    REQUIRE(walk->Clone(copy.out()) == S_OK);
    CHECK(walk->Next(4, items, &fetched) == S_FALSE);
    CHECK(fetched == 1);
    ::VariantClear(items);
    CHECK(copy->Skip(1) == S_OK);
    CHECK(copy->Skip(1) == S_FALSE);
    CHECK(copy->Reset() == S_OK);
    REQUIRE(copy->Next(1, items, nullptr) == S_OK);
    CHECK(std::wstring(items[0].bstrVal) == L"1");
    ::VariantClear(items);
    CHECK(walk->Next(2, items, nullptr) == E_POINTER);
    fetched = 9;
    CHECK(walk->Next(1, nullptr, &fetched) == E_POINTER);
    CHECK(fetched == 0);
    CHECK(walk->Clone(nullptr) == E_POINTER);
}

TEST_CASE_FIXTURE(Keyed, "a walk skips as many as are asked for, and at most to the end") {
    for (const wchar_t* text : {L"1", L"2", L"3", L"4", L"5"}) add(text, text);
    auto walk = walkOf(list.get());
    win32::Variant item;
    ULONG fetched = 9;
    CHECK(walk->Skip(2) == S_OK);
    REQUIRE(walk->Next(1, item.out(), &fetched) == S_OK);
    CHECK(std::wstring(item.bstrVal) == L"3");
    CHECK(walk->Skip(2) == S_OK);
    CHECK(walk->Skip(0) == S_OK);
    for (ULONG count : {1, 9}) {
        CHECK(walk->Skip(count) == S_FALSE);
        CHECK(walk->Next(1, item.out(), &fetched) == S_FALSE);
        CHECK(fetched == 0);
    }
    REQUIRE(walk->Reset() == S_OK);
    CHECK(walk->Skip(9) == S_FALSE);
    add(L"6", L"6");
    // The end is where it is when the walk gets there.
    REQUIRE(walk->Next(1, item.out(), &fetched) == S_OK);
    CHECK(std::wstring(item.bstrVal) == L"6");
}

TEST_CASE_FIXTURE(Keyed, "a hundred thousand keys are added and found quickly") {
    const DWORD start = processorTime();
    for (int i = 0; i < 100000; ++i) add(L"x", std::to_wstring(i));
    CHECK(has(L"99999"));
    CHECK(count() == 100000);
    CHECK(processorTime() - start < 10000);
}

TEST_CASE_FIXTURE(Records, "records stand in the order of adding and outlive their list") {
    auto first = add(), second = add();
    REQUIRE(first->SetName(bs(L"one").get()) == S_OK);
    REQUIRE(second->SetName(bs(L"two").get()) == S_OK);
    LONG count = 0;
    REQUIRE(list->get_Count(&count) == S_OK);
    CHECK(count == 2);
    win32::ComPtr<IRecord> found;
    REQUIRE(list->get_Item(2, found.out()) == S_OK);
    CHECK(stringFrom([&](BSTR* name) { return found->get_Name(name); }) == L"two");
    CHECK(list->get_Item(0, found.out()) == DISP_E_BADINDEX);
    CHECK(list->get_Item(3, found.out()) == DISP_E_BADINDEX);
    set(first, L"Name", L"a");
    auto name = field(first, L"Name");
    list = {};
    first = {};
    CHECK(text(name) == L"a");
}

TEST_CASE_FIXTURE(Records, "walking a list gives its records") {
    add()->SetName(bs(L"one").get());
    add()->SetName(bs(L"two").get());
    win32::ComPtr<IUnknown> unknown;
    REQUIRE(list->get__NewEnum(unknown.out()) == S_OK);
    auto walk = unknown.as<IEnumVARIANT>(IID_IEnumVARIANT);
    Names names;
    for (win32::Variant item; walk->Next(1, item.out(), nullptr) == S_OK;) {
        REQUIRE(item.vt == VT_DISPATCH);
        auto record = win32::ComPtr<IDispatch>(item.pdispVal).as<IRecord>(IID_IRecord);
        names.push_back(stringFrom([&](BSTR* name) { return record->get_Name(name); }));
    }
    CHECK(names == Names{L"one", L"two"});
}

TEST_CASE_FIXTURE(Records, "setting a field replaces all it held") {
    auto record = add();
    set(record, L"Name", L"a");
    REQUIRE(record->SetField(bs(L"Size").get(), variant(LONG{5})) == S_OK);
    auto name = field(record, L"Name");
    REQUIRE(name->Add(variant(std::wstring(L"b"))) == S_OK);
    LONG count = 0;
    REQUIRE(name->get_Count(&count) == S_OK);
    CHECK(count == 2);
    win32::Variant value;
    REQUIRE(name->get_Item(1, value.out()) == S_OK);
    CHECK(std::wstring(value.bstrVal) == L"a");
    VARIANT place;
    std::memset(&place, 0x5A, sizeof place);
    REQUIRE(name->get_Item(2, &place) == S_OK);
    CHECK(std::wstring(place.bstrVal) == L"b");
    ::VariantClear(&place);
    CHECK(name->get_Item(3, value.out()) == DISP_E_BADINDEX);
    CHECK(name->get_Item(0, value.out()) == DISP_E_BADINDEX);
    set(record, L"Name", L"c");
    REQUIRE(name->get_Count(&count) == S_OK);
    CHECK(count == 1);
    CHECK(text(name) == L"c");
    REQUIRE(field(record, L"Size")->get_Value(value.out()) == S_OK);
    CHECK(value.vt == VT_I4);
    CHECK(value.lVal == 5);
}

TEST_CASE_FIXTURE(Records, "fields are walked in the order of adding, names told apart by case") {
    auto record = add();
    for (const wchar_t* name : {L"Z", L"a", L"A"}) set(record, name, name);
    field(record, L"Z")->Add(variant(std::wstring(L"more")));
    LONG count = 0;
    REQUIRE(record->get_Count(&count) == S_OK);
    CHECK(count == 3);
    win32::ComPtr<IUnknown> unknown;
    REQUIRE(record->get__NewEnum(unknown.out()) == S_OK);
    auto walk = unknown.as<IEnumVARIANT>(IID_IEnumVARIANT);
    Names names;
    for (win32::Variant item; walk->Next(1, item.out(), nullptr) == S_OK;) {
        auto walked = win32::ComPtr<IDispatch>(item.pdispVal).as<IField>(IID_IField);
        names.push_back(stringFrom([&](BSTR* name) { return walked->get_Name(name); }));
    }
    CHECK(names == Names{L"Z", L"a", L"A"});
}

TEST_CASE_FIXTURE(Records, "a field takes strings and numbers, and a missing one is an error") {
    auto record = add();
    VARIANT number = {};
    number.vt = VT_I2;
    number.iVal = -3;
    REQUIRE(record->SetField(bs(L"n").get(), number) == S_OK);
    win32::Variant value;
    REQUIRE(field(record, L"n")->get_Value(value.out()) == S_OK);
    CHECK(value.vt == VT_I4);
    CHECK(value.lVal == -3);
    VARIANT nothing = {};
    CHECK(record->SetField(bs(L"x").get(), nothing) == DISP_E_TYPEMISMATCH);
    win32::ComPtr<IField> missing;
    CHECK(record->Field(bs(L"x").get(), missing.out()) == E_INVALIDARG);
    CHECK_FALSE(missing);
}

namespace {

// Has three items, of which the one at `broken` cannot be given.
struct BrokenSequence : helmkit::server::Sequence {
    explicit BrokenSequence(LONG broken) : broken(broken) {}
    LONG length() override { return 3; }
    win32::Variant itemAt(LONG position) override {
        if (position == broken) win32::raise(E_ABORT, L"The item cannot be given");
        return win32::Variant(std::wstring(L"item"));
    }
    IUnknown* owner() override { return static_cast<IKeyedList*>(list.get()); }

    LONG broken;
    win32::ComPtr<helmkit::server::KeyedList> list = make<helmkit::server::KeyedList>();
};

struct BrokenKeyedList : helmkit::server::KeyedList {
    STDMETHODIMP get__NewEnum(IUnknown** enumerator) override {
        *enumerator = helmkit::server::newEnumerator(sequence).release();
        return S_OK;
    }
    BrokenSequence sequence{1};
};

struct BrokenRegistry : helmkit::server::RegistryAccess {
    STDMETHODIMP EnumValues(LONG, BSTR, IKeyedList** names) override {
        *names = make<BrokenKeyedList>().release();
        return S_OK;
    }
};

// Has something in the place of its walk that cannot be walked.
template <class List>
struct NoWalk : List {
    STDMETHODIMP get__NewEnum(IUnknown** enumerator) override {
        *enumerator = static_cast<IFileServices*>(make<helmkit::server::FileServices>().release());
        return S_OK;
    }
};

struct RegistryWithoutWalk : helmkit::server::RegistryAccess {
    STDMETHODIMP EnumValues(LONG, BSTR, IKeyedList** names) override {
        *names = make<NoWalk<helmkit::server::KeyedList>>().release();
        return S_OK;
    }
};

// As many names as the key's name has characters.
struct CountedRegistry : helmkit::server::RegistryAccess {
    STDMETHODIMP EnumValues(LONG, BSTR key, IKeyedList** names) override {
        auto list = make<helmkit::server::KeyedList>();
        for (UINT i = 0; i < ::SysStringLen(key); ++i) list->append(L"name " + std::to_wstring(i));
        *names = list.release();
        return S_OK;
    }
};

struct BrokenRecordList : helmkit::server::RecordList {
    STDMETHODIMP get__NewEnum(IUnknown** enumerator) override {
        *enumerator = helmkit::server::newEnumerator(sequence).release();
        return S_OK;
    }
    BrokenSequence sequence{0};
};

// In the place of the library's class, for this process.
class OfferedClass {
  public:
    OfferedClass(const CLSID& clsid, HRESULT (*create)(REFIID, void**)) : class_{&clsid, L"", create} {
        win32::ComPtr<IUnknown> factory;
        REQUIRE(win32::getClassObject({&class_, 1, nullptr, 0, 0}, clsid, IID_IUnknown,
                                      reinterpret_cast<void**>(factory.out())) == S_OK);
        REQUIRE(::CoRegisterClassObject(clsid, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                        &cookie_) == S_OK);
    }
    ~OfferedClass() { ::CoRevokeClassObject(cookie_); }

  private:
    win32::ComClass class_;
    DWORD cookie_ = 0;
};

}  // namespace

TEST_CASE("a walk that fails in its middle is an error and gives nothing of that call") {
    BrokenSequence sequence(1);
    auto walk = helmkit::server::newEnumerator(sequence);
    win32::Variant items[3];
    ULONG fetched = 9;
    CHECK(walk->Next(3, items, &fetched) == E_ABORT);
    CHECK(fetched == 0);
    for (const win32::Variant& item : items) CHECK(item.vt == VT_EMPTY);
    CHECK(walk->Next(1, items, &fetched) == S_OK);
    CHECK(walk->Next(1, &items[1], &fetched) == E_ABORT);
}

TEST_CASE("callers of a list that cannot be walked to its end are told so") {
    OfferedClass registry(CLSID_RegistryAccess, win32::createObject<BrokenRegistry>);
    OfferedClass records(CLSID_RecordList, win32::createObject<BrokenRecordList>);
    CHECK_THROWS_AS(helmkit::RegistryAccess().EnumValues(helmkit::HKLM, L"k"), win32::Error);
    CHECK_THROWS_AS(helmkit::RecordList().records(), win32::Error);
}

TEST_CASE("callers of a list that cannot be walked at all are told so") {
    OfferedClass registry(CLSID_RegistryAccess, win32::createObject<RegistryWithoutWalk>);
    OfferedClass records(CLSID_RecordList, win32::createObject<NoWalk<helmkit::server::RecordList>>);
    const auto description = [](const std::function<void()>& call) {
        try {
            call();
            return std::wstring();
        } catch (const win32::Error& error) {
            CHECK(error.number == E_NOINTERFACE);
            return error.description;
        }
    };
    CHECK(description([] { helmkit::RegistryAccess().EnumValues(helmkit::HKLM, L"k"); }) ==
          L"The list cannot be walked");
    CHECK(description([] { helmkit::RecordList().records(); }) == L"The list cannot be walked");
    NoWalk<helmkit::server::Record> record;
    CHECK(description([&] { support::parametersOf(&record); }) == L"The parameters cannot be walked");
}

TEST_CASE("callers get every name of a list, however many come at once") {
    OfferedClass registry(CLSID_RegistryAccess, win32::createObject<CountedRegistry>);
    helmkit::RegistryAccess access;
    for (size_t count : {0, 1, 63, 64, 65, 127, 128, 129, 200}) {
        CAPTURE(count);
        const Names names = access.EnumValues(helmkit::HKLM, std::wstring(count, L'k'));
        REQUIRE(names.size() == count);
        for (size_t i = 0; i < count; ++i) CHECK(names[i] == L"name " + std::to_wstring(i));
    }
}

TEST_CASE("callers get a field's text and number, and nothing of the other kind") {
    const HelmkitClasses classes;
    helmkit::RecordList list;
    helmkit::Record record = list.AddRecord();
    record.SetName(L"name");
    record.SetField(L"text", L"7");
    record.SetField(L"number", 7);
    list.AddRecord();
    CHECK(record.Name() == L"name");
    CHECK(record.text(L"text") == L"7");
    CHECK(record.number(L"text") == 0);
    CHECK(record.text(L"number").empty());
    CHECK(record.number(L"number") == 7);
    CHECK_THROWS_AS(record.text(L"none"), win32::Error);
    REQUIRE(list.records().size() == 2);
    CHECK(list.records()[0].Name() == L"name");
    CHECK(list.records()[1].Name().empty());
    helmkit::KeyedList keyed;
    keyed.Add(L"item", L"key");
    keyed.Add(L"other", L"key");
    CHECK(keyed.find(L"key") == L"item");
    CHECK_FALSE(keyed.find(L"Key"));
}
