// COM on the caller's side: owners of interfaces, texts and variants, and objects that are called late.
#include "win32/com/automation.h"

#include <doctest/doctest.h>

#include <vector>

#include "tests/support/counting_dispatch.h"
#include "tests/support/raised.h"
#include "tests/support/scripted_request.h"
#include "tests/support/text.h"
#include "win32/com/com.h"

namespace {

using win32::BString;
using win32::ComPtr;
using win32::Variant;

// The memory of its own that this process has, in KiB.
size_t ownMemory() {
    MEMORY_BASIC_INFORMATION region = {};
    size_t bytes = 0;
    for (const char* at = nullptr; ::VirtualQuery(at, &region, sizeof region);
         at = static_cast<const char*>(region.BaseAddress) + region.RegionSize) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
    }
    return bytes / 1024;
}

// Whether 16 steps, each with a text of half a megabyte, leave most of these texts behind.
template <class Step>
bool leavesTexts(Step step) {
    const std::wstring text(1 << 18, L'x');
    const size_t before = ownMemory();
    for (int i = 0; i < 16; ++i) step(text);
    return ownMemory() > before + 4 * 1024;
}

VARIANT variantOf(VARTYPE type, double value) {
    VARIANT made = {};
    made.vt = type;
    made.dblVal = value;
    return made;
}

// Fails with an exception of these contents.
struct Failing : CountingDispatch {
    SCODE code = E_ACCESSDENIED;
    WORD shortCode = 0;
    const wchar_t* description = L"said so";
    HRESULT(STDAPICALLTYPE* fill)(EXCEPINFO*) = nullptr;
    std::vector<LONG> arguments;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* id) override {
        CHECK(iid == IID_NULL);
        CHECK(locale == LOCALE_USER_DEFAULT);
        *id = 7;
        return count == 1 && std::wstring(names[0]) == L"Do" ? S_OK : DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                                     VARIANT*, EXCEPINFO* exception, UINT*) override {
        CHECK(id == 7);
        CHECK(iid == IID_NULL);
        CHECK(locale == LOCALE_USER_DEFAULT);
        CHECK(flags == DISPATCH_METHOD);
        CHECK(parameters->cNamedArgs == 0);
        for (UINT i = 0; i < parameters->cArgs; ++i) arguments.push_back(parameters->rgvarg[i].lVal);
        *exception = {};
        exception->scode = code;
        exception->wCode = shortCode;
        exception->bstrDescription = description ? ::SysAllocString(description) : nullptr;
        exception->pfnDeferredFillIn = fill;
        return DISP_E_EXCEPTION;
    }
};

HRESULT STDAPICALLTYPE fillLate(EXCEPINFO* exception) {
    exception->scode = E_ABORT;
    exception->bstrDescription = ::SysAllocString(L"told late");
    return S_OK;
}

}  // namespace

TEST_CASE("an owner of an interface has one reference, and lets go of it once") {
    CountingDispatch one, other;
    {
        ComPtr<IDispatch> shared(&one), empty;
        CHECK(one.references == 1);
        CHECK(shared);
        CHECK_FALSE(empty);
        ComPtr<IDispatch> copy(shared), moved(std::move(copy));
        CHECK(one.references == 2);
        CHECK_FALSE(copy);
        CHECK(moved.get() == &one);
        moved = ComPtr<IDispatch>(&other);
        CHECK(one.references == 1);
        CHECK(other.references == 1);
        ComPtr<IUnknown> as = moved.as<IUnknown>(IID_IUnknown);
        CHECK(other.references == 2);
        CHECK_FALSE(moved.as<IUnknown>(IID_IPersist));
        CHECK_FALSE(empty.as<IUnknown>(IID_IUnknown));
        *moved.out() = nullptr;
        CHECK(other.references == 1);
        CHECK(as.release() == &other);
        other.Release();
        ComPtr<IDispatch> adopted = ComPtr<IDispatch>::adopt(shared.release());
        CHECK(one.references == 1);
    }
    CHECK(one.references == 0);
    CHECK(other.references == 0);
}

TEST_CASE("owners of texts hold them whole, and give them back") {
    BString text(std::wstring_view(L"a\0b", 3));
    CHECK(text.text() == std::wstring(L"a\0b", 3));
    BString moved(std::move(text));
    CHECK(text.get() == nullptr);
    CHECK(moved.text().size() == 3);
    text = std::move(moved);
    CHECK(text.text().size() == 3);
    CHECK(::SysStringLen(BString::ofLength(5).get()) == 5);
    CHECK(BString::view(nullptr).empty());
    CHECK(BString().text().empty());
    CHECK(BString(L"").get() != nullptr);
    Variant made(L"abc"), number(LONG{5});
    CHECK(made.vt == VT_BSTR);
    CHECK(BString::view(made.bstrVal) == L"abc");
    CHECK(number.vt == VT_I4);
    CHECK(number.lVal == 5);
    number = std::move(made);
    CHECK(number.vt == VT_BSTR);
    Variant last(std::move(number));
    CHECK(number.vt == VT_EMPTY);
    VARIANT plain = last.detach();
    CHECK(last.vt == VT_EMPTY);
    CHECK(plain.vt == VT_BSTR);
    ::VariantClear(&plain);

    CHECK_FALSE(leavesTexts([](const std::wstring& text) { BString{text}; }));
    CHECK_FALSE(leavesTexts([](const std::wstring& text) { BString(text).out(); }));
    CHECK_FALSE(leavesTexts([](const std::wstring& text) { Variant{text}; }));
    CHECK_FALSE(leavesTexts([](const std::wstring& text) { Variant(text).out(); }));
    std::vector<BSTR> left;
    CHECK(leavesTexts([&](const std::wstring& text) { left.push_back(BString(text).release()); }));
    for (BSTR text : left) ::SysFreeString(text);
}

TEST_CASE("properties are read late, as numbers and texts; what fails is thrown") {
    ScriptedRequest request;
    request.status = 404;
    request.statusText = L"12";
    CHECK(win32::propertyOf(&request, L"status").lVal == 404);
    CHECK(win32::numberProperty(&request, L"status") == 404);
    CHECK(win32::numberProperty(&request, L"statusText") == 12);
    CHECK(win32::textProperty(&request, L"status") == L"404");
    CHECK(win32::textProperty(&request, L"statusText") == L"12");
    CHECK(raisedBy([&] { win32::propertyOf(&request, L"nothing"); }).number == DISP_E_UNKNOWNNAME);
    request.failing = {L"status"};
    CHECK(raisedBy([&] { win32::numberProperty(&request, L"status"); }).number == E_FAIL);
    CHECK_FALSE(win32::createByName(L"Quillon.NoSuchClass"));
}

TEST_CASE("a value's text is that of US English, of what it refers to, or empty for nothing") {
    for (VARTYPE type : {VT_EMPTY, VT_NULL, VT_ERROR}) {
        const VARIANT nothing = variantOf(type, 1);
        CHECK(win32::isNothing(nothing));
        CHECK(win32::valueText(nothing).empty());
    }
    VARIANT half = variantOf(VT_R8, 0.5), day = variantOf(VT_DATE, 45000);
    CHECK_FALSE(win32::isNothing(half));
    CHECK(win32::valueText(half) == L"0.5");
    CHECK(win32::valueText(day) == L"3/15/2023");
    VARIANT reference = {};
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &half;
    CHECK(win32::valueText(reference) == L"0.5");
    for (int type : {VT_BYREF | VT_I4, VT_BYREF | VT_VARIANT, int{VT_RECORD}, VT_BYREF | VT_RECORD}) {
        VARIANT nowhere = {};
        nowhere.vt = static_cast<VARTYPE>(type);
        const win32::Error error = raisedBy([&] { win32::valueText(nowhere); });
        CHECK(error.number == DISP_E_TYPEMISMATCH);
        CHECK(error.description == L"A value of this type has no text");
    }
}

TEST_CASE("an object given by reference may be exchanged, and each is let go of once") {
    CountingDispatch one, other;
    {
        win32::DispatchByReference reference(&one);
        CHECK(one.references == 1);
        VARIANT argument = reference.variant();
        CHECK(argument.vt == (VT_BYREF | VT_DISPATCH));
        CHECK(*argument.ppdispVal == &one);
        one.Release();
        other.AddRef();
        *argument.ppdispVal = &other;
        ComPtr<IDispatch> taken = reference.take();
        CHECK(taken.get() == &other);
        CHECK(other.references == 1);
        win32::DispatchByReference left(&one);
    }
    CHECK(one.references == 0);
    CHECK(other.references == 0);
}

TEST_CASE("an exception of a call comes with its number and description, the system's where it has none") {
    Failing object;
    VARIANT arguments[3] = {Variant(LONG{1}), Variant(LONG{2}), Variant(LONG{3})};
    const auto told = [&] { return raisedBy([&] { win32::invoke(&object, L"Do", arguments, 3); }); };
    win32::Error error = told();
    CHECK((object.arguments == std::vector<LONG>{3, 2, 1}));
    CHECK(error.number == E_ACCESSDENIED);
    CHECK(error.description == L"said so");
    object.code = 0;
    object.shortCode = 1004;
    CHECK(told().number == 1004);
    object.code = E_ACCESSDENIED;
    object.description = nullptr;
    CHECK(told().description == win32::systemDescription(static_cast<DWORD>(E_ACCESSDENIED)));
    object.fill = &fillLate;
    error = told();
    CHECK(error.number == E_ABORT);
    CHECK(error.description == L"told late");
    CHECK(raisedBy([&] { win32::invoke(&object, L"Other", nullptr, 0); }).number == DISP_E_UNKNOWNNAME);
}

TEST_CASE("a failed call is described by what it left, else by the system, and a success by nothing") {
    ComPtr<ICreateErrorInfo> creator;
    REQUIRE(::CreateErrorInfo(creator.out()) == S_OK);
    BString words(L"left behind");
    creator->SetDescription(words.get());
    ::SetErrorInfo(0, creator.as<IErrorInfo>(IID_IErrorInfo).get());
    CHECK_NOTHROW(win32::check(S_FALSE));
    CHECK(raisedBy([] { win32::check(E_FAIL); }).description == L"left behind");
    CHECK(raisedBy([] { win32::check(E_FAIL); }).description ==
          win32::systemDescription(static_cast<DWORD>(E_FAIL)));
    CHECK(raisedBy([] { win32::create<IUnknown>(IID_IPersist, IID_IUnknown); }).number ==
          REGDB_E_CLASSNOTREG);
}
