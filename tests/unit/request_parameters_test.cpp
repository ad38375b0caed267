#include "support/request_parameters.h"

#include <doctest/doctest.h>

#include "helmkit/record.h"
#include "tests/support/objects.h"
#include "tests/support/scripted_parameters.h"

TEST_CASE("a request's parameters are a record's fields in their order, their values as text") {
    auto record = make<helmkit::server::Record>();
    CHECK(support::parametersOf(record.get()).empty());
    REQUIRE(record->SetField(bs(L"second").get(), win32::Variant(LONG{-7})) == S_OK);
    REQUIRE(record->SetField(bs(L"first").get(), win32::Variant(std::wstring(L"a"))) == S_OK);
    const auto parameters = support::parametersOf(record.get());
    REQUIRE(parameters.size() == 2);
    REQUIRE(parameters[1]->Add(win32::Variant(std::wstring(L"b"))) == S_OK);
    CHECK(support::nameOf(parameters[0]) == L"second");
    CHECK(support::valueCount(parameters[0]) == 1);
    CHECK(support::valueAt(parameters[0], 1) == L"-7");
    CHECK(support::nameOf(parameters[1]) == L"first");
    CHECK(support::valueCount(parameters[1]) == 2);
    CHECK(support::valueAt(parameters[1], 1) == L"a");
    CHECK(support::valueAt(parameters[1], 2) == L"b");
    CHECK_THROWS_AS(support::valueAt(parameters[1], 3), win32::Error);
}

namespace {

struct FailingField : ScriptedField {
    FailingField() : ScriptedField(L"name", {}) {}
    HRESULT STDMETHODCALLTYPE get_Name(BSTR*) override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE get_Count(LONG*) override { return E_FAIL; }
};

struct FailingRecord : ScriptedRecord {
    HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown**) override { return E_FAIL; }
};

}  // namespace

TEST_CASE("what cannot be asked of a request's parameters is an error") {
    FailingField field;
    FailingRecord record;
    const win32::ComPtr<IField> parameter(&field);
    CHECK_THROWS_AS(support::nameOf(parameter), win32::Error);
    CHECK_THROWS_AS(support::valueCount(parameter), win32::Error);
    CHECK_THROWS_AS(support::parametersOf(&record), win32::Error);
}
