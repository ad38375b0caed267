#include "helmkit/system_services.h"

#include <doctest/doctest.h>

#include <cstring>

#include "tests/support/objects.h"
#include "tests/support/scripted_desktop.h"
#include "tests/support/scripted_parameters.h"
#include "win32/files/files.h"
#include "win32/system/environment.h"
#include "win32/system/system.h"

namespace {

struct Services {
    win32::ComPtr<helmkit::server::SystemServices> system = make<helmkit::server::SystemServices>();

    std::wstring format(const std::wstring& text, const VARIANT& arguments) {
        return stringFrom(
            [&](BSTR* result) { return system->FormatMessage(bs(text).get(), arguments, result); });
    }
    std::wstring expand(const std::wstring& text) {
        return stringFrom([&](BSTR* result) { return system->ExpandEnvironment(bs(text).get(), result); });
    }
    bool isEmpty(SAFEARRAY* bytes) {
        VARIANT_BOOL answer = VARIANT_FALSE;
        REQUIRE(system->IsEmptyBytes(&bytes, &answer) == S_OK);
        return answer == VARIANT_TRUE;
    }
};

bool ran = false;

void CALLBACK timerRan(HWND, UINT, UINT_PTR, DWORD) {
    ran = true;
}

// An array of one dimension, from `first` on.
struct Array : win32::Variant {
    Array(VARTYPE type, ULONG count, LONG first = 0) {
        SAFEARRAYBOUND bound = {count, first};
        parray = ::SafeArrayCreate(type, 1, &bound);
        vt = VT_ARRAY | type;
    }
    void put(LONG position, void* element) {
        REQUIRE(::SafeArrayPutElement(parray, &position, element) == S_OK);
    }
};

}  // namespace

TEST_CASE_FIXTURE(Services, "messages take arrays of values, strings or numbers, and a single value") {
    Array values(VT_VARIANT, 3, 1);
    win32::Variant text(std::wstring(L"a%2")), number(LONG{-5}), nothing;
    values.put(1, &text);
    values.put(2, &number);
    values.put(3, &nothing);
    CHECK(format(L"%1|%2|%3|%4", values) == L"a%2|-5||%4");
    VARIANT byReference;
    byReference.vt = VT_ARRAY | VT_VARIANT | VT_BYREF;
    byReference.pparray = &values.parray;
    CHECK(format(L"%2", byReference) == L"-5");
    VARIANT variantReference;
    variantReference.vt = VT_VARIANT | VT_BYREF;
    variantReference.pvarVal = &values;
    CHECK(format(L"%2", variantReference) == L"-5");

    Array strings(VT_BSTR, 2);
    strings.put(0, bs(L"x").get());
    CHECK(format(L"[%1][%2]", strings) == L"[x][]");
    Array numbers(VT_I4, 1);
    LONG seven = 7;
    numbers.put(0, &seven);
    CHECK(format(L"%1", numbers) == L"7");

    CHECK(format(L"%1 %2", win32::Variant(std::wstring(L"one"))) == L"one %2");
    CHECK(format(L"%1", win32::Variant()) == L"%1");
    CHECK(format(L"%1", Array(VT_VARIANT, 0)) == L"%1");
}

TEST_CASE_FIXTURE(Services,
                  "arguments of every type are converted one by one, what has no text is an error") {
    Array decimals(VT_DECIMAL, 3);
    DECIMAL decimal = {};
    decimal.Lo64 = 12345;
    decimal.scale = 2;
    for (LONG i : {0L, 1L, 2L}) decimals.put(i, &decimal);
    CHECK(format(L"%1 %2 %3 %4", decimals) == L"123.45 123.45 123.45 %4");
    Array currencies(VT_CY, 1), doubles(VT_R8, 1), flags(VT_BOOL, 1), bytes(VT_UI1, 1), dates(VT_DATE, 1);
    CY currency;
    currency.int64 = 15000;
    currencies.put(0, &currency);
    CHECK(format(L"%1", currencies) == L"1.5");
    double half = 0.5;
    doubles.put(0, &half);
    CHECK(format(L"%1", doubles) == L"0.5");
    VARIANT_BOOL yes = VARIANT_TRUE;
    flags.put(0, &yes);
    CHECK(format(L"%1", flags) == L"-1");
    BYTE byte = 200;
    bytes.put(0, &byte);
    CHECK(format(L"%1", bytes) == L"200");
    double day = 1;
    dates.put(0, &day);
    CHECK(format(L"%1", dates) == L"12/31/1899");
}

TEST_CASE_FIXTURE(Services, "an array may be of every type that has a text") {
    // The bytes of one element, all of them 1, and what they are as a number of that type.
    const struct {
        VARTYPE type;
        const wchar_t* text;
    } rows[] = {{VT_I1, L"1"},
                {VT_UI1, L"1"},
                {VT_I2, L"257"},
                {VT_UI2, L"257"},
                {VT_I4, L"16843009"},
                {VT_UI4, L"16843009"},
                {VT_INT, L"16843009"},
                {VT_UINT, L"16843009"},
                {VT_I8, L"72340172838076673"},
                {VT_UI8, L"72340172838076673"},
                {VT_R4, nullptr},
                {VT_R8, nullptr},
                {VT_CY, nullptr},
                {VT_DATE, nullptr}};
    for (const auto& row : rows) {
        CAPTURE(row.type);
        Array numbers(row.type, 2);
        std::memset(numbers.parray->pvData, 1, 2 * ::SafeArrayGetElemsize(numbers.parray));
        win32::Variant one;
        one.vt = row.type;
        std::memset(&one.llVal, 1, sizeof one.llVal);
        // What is told of numbers with a point is the same as of one by itself.
        const std::wstring text = row.text ? row.text : format(L"%1", one);
        CHECK(format(L"%1 %2", numbers) == text + L" " + text);
    }
}

TEST_CASE_FIXTURE(Services, "an array of none of a type that may have a text gives no arguments") {
    for (VARTYPE type : {VT_I1,  VT_UI1,  VT_I2,      VT_UI2,   VT_BOOL,     VT_I4,      VT_UI4,
                         VT_INT, VT_UINT, VT_R4,      VT_ERROR, VT_I8,       VT_UI8,     VT_R8,
                         VT_CY,  VT_DATE, VT_DECIMAL, VT_BSTR,  VT_DISPATCH, VT_UNKNOWN, VT_VARIANT}) {
        CAPTURE(type);
        CHECK(format(L"%1", Array(type, 0)) == L"%1");
    }
    win32::Variant none;
    none.parray = nullptr;
    none.vt = VT_ARRAY | VT_VARIANT;
    CHECK(format(L"%1", none) == L"%1");
}

TEST_CASE_FIXTURE(Services,
                  "an array of errors has empty texts, one of texts each of its own, from any bound on") {
    CHECK(format(L"[%1][%2][%3]", Array(VT_ERROR, 2)) == L"[][][%3]");
    for (LONG first : {-1, 0, 1, 5}) {
        Array texts(VT_BSTR, 2, first);
        texts.put(first, bs(L"a").get());
        texts.put(first + 1, bs(L"b").get());
        CHECK(format(L"%1%2%3", texts) == L"ab%3");
        CHECK(texts.parray->cLocks == 0);
    }
}

namespace {

// An object whose value is asked for while the array that holds it is at work.
struct Watching : FixtureDispatch<IDispatch> {
    SAFEARRAY* array = nullptr;
    ULONG locks = 0;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                     UINT*) override {
        locks = array->cLocks;
        result->vt = VT_BSTR;
        result->bstrVal = win32::BString(L"value").release();
        return S_OK;
    }
};

}  // namespace

TEST_CASE_FIXTURE(Services, "an object's text is its value, and its array stays where it is meanwhile") {
    Watching object;
    Array objects(VT_DISPATCH, 1);
    object.array = objects.parray;
    objects.put(0, static_cast<IDispatch*>(&object));
    CHECK(format(L"%1", objects) == L"value");
    CHECK(object.locks == 1);
    CHECK(objects.parray->cLocks == 0);
}

TEST_CASE_FIXTURE(Services, "arguments without a text and arrays that are not what they claim are refused") {
    auto refused = [&](VARIANT& arguments) {
        win32::BString result;
        return FAILED(system->FormatMessage(bs(L"%1").get(), arguments, result.out())) && !result.get();
    };
    Array decimals(VT_DECIMAL, 2), numbers(VT_I4, 2), objects(VT_UNKNOWN, 1);
    for (VARTYPE claimed :
         {VT_RECORD, VT_I4, VT_BSTR, VT_VARIANT, VT_I2, VT_LPWSTR, VT_CLSID, VT_EMPTY, VT_NULL}) {
        CAPTURE(claimed);
        VARIANT lying;
        lying.vt = static_cast<VARTYPE>(VT_ARRAY | claimed);
        lying.parray = decimals.parray;
        CHECK(refused(lying));
    }
    Array bytes(VT_UI1, 2);
    VARIANT lying;
    lying.parray = bytes.parray;
    for (VARTYPE claimed : {VT_EMPTY, VT_NULL, VT_LPWSTR, VT_CLSID, VT_RECORD, VT_I2}) {
        CAPTURE(claimed);
        lying.vt = static_cast<VARTYPE>(VT_ARRAY | claimed);
        win32::BString result;
        CHECK(system->FormatMessage(bs(L"%1").get(), lying, result.out()) == DISP_E_TYPEMISMATCH);
    }
    lying.parray = numbers.parray;
    for (VARTYPE claimed : {VT_BSTR, VT_DISPATCH, VT_UNKNOWN, VT_R8}) {
        CAPTURE(claimed);
        lying.vt = static_cast<VARTYPE>(VT_ARRAY | claimed);
        CHECK(refused(lying));
    }
    win32::ComPtr<helmkit::server::SystemServices> object = system;
    objects.put(0, static_cast<IUnknown*>(static_cast<ISystemServices*>(object.get())));
    CHECK(refused(objects));
    VARIANT single;
    for (int type :
         {int{VT_RECORD}, VT_BYREF | VT_RECORD, VT_BYREF | VT_I4, VT_BYREF | VT_BSTR, VT_BYREF | VT_VARIANT,
          VT_BYREF | VT_ARRAY | VT_I4, int{VT_CLSID}, int{VT_LPSTR}, 0x4FFF}) {
        CAPTURE(type);
        ::VariantInit(&single);
        single.vt = static_cast<VARTYPE>(type);
        CHECK(refused(single));
    }
}

TEST_CASE_FIXTURE(Services, "arguments of two dimensions are refused") {
    SAFEARRAYBOUND bounds[2] = {{1, 0}, {1, 0}};
    win32::Variant table;
    table.parray = ::SafeArrayCreate(VT_VARIANT, 2, bounds);
    table.vt = VT_ARRAY | VT_VARIANT;
    win32::BString result;
    CHECK(system->FormatMessage(bs(L"%1").get(), table, result.out()) == E_INVALIDARG);
}

TEST_CASE_FIXTURE(Services, "environment references are replaced, unknown ones stay, any length") {
    win32::setEnvironmentVariable(L"QuillonTest", L"value");
    CHECK(expand(L"a %QuillonTest% b") == L"a value b");
    CHECK(expand(L"%quillontest%%QUILLONTEST%") == L"valuevalue");
    CHECK(expand(L"%no such variable%") == L"%no such variable%");
    REQUIRE(::SetEnvironmentVariableW(L"QuillonEmpty", L""));
    CHECK(expand(L"a%QuillonEmpty%b%QuillonEmpty%") == L"ab");
    CHECK(expand(L"%%") == L"%%");
    CHECK(expand(std::wstring(L"%QuillonTest\0x%", 15)) == std::wstring(L"%QuillonTest\0x%", 15));
    CHECK(expand(L"100%") == L"100%");
    CHECK(expand(L"") == L"");
    std::wstring text;
    for (int i = 0; i < 3000; ++i) text += L"%QuillonTest%";
    std::wstring expected;
    for (int i = 0; i < 3000; ++i) expected += L"value";
    bool isExpanded = expand(text) == expected;
    CHECK(isExpanded);
}

TEST_CASE_FIXTURE(Services, "folders") {
    CHECK(stringFrom([&](BSTR* path) { return system->GetWindowsFolder(path); }) == expand(L"%windir%"));
    std::wstring temp = stringFrom([&](BSTR* path) { return system->GetTempFolder(path); });
    CHECK(temp.back() == L'\\');
    CHECK((::GetFileAttributesW(temp.c_str()) & FILE_ATTRIBUTE_DIRECTORY) != 0);
    CHECK(win32::fileExists(win32::modulePath(nullptr)));
    CHECK(win32::modulePath(win32::thisModule()) == win32::modulePath(nullptr));
}

TEST_CASE_FIXTURE(Services,
                  "temporary names are fresh, begin with the prefix, have no extension and are not made") {
    auto fresh = [&](const wchar_t* prefix) {
        return stringFrom([&](BSTR* path) { return system->GetTempFileName(bs(prefix).get(), path); });
    };
    std::wstring temp = win32::tempFolder();
    std::wstring first = fresh(L"sc"), second = fresh(L"sc");
    CHECK(first != second);
    CHECK(first.substr(0, temp.size() + 2) == temp + L"sc");
    const std::wstring rest = first.substr(temp.size() + 2);
    CHECK(rest.size() == 32);
    CHECK(rest.find_first_not_of(L"0123456789ABCDEF") == std::wstring::npos);
    CHECK(fresh(L"").size() == temp.size() + 32);
    CHECK_FALSE(win32::fileExists(first));
    win32::BString path;
    for (wchar_t c : std::wstring(L"\\/:*?\"<>|\0", 10)) {
        for (const std::wstring& prefix : {std::wstring(1, c), std::wstring{L'a', c}, std::wstring{c, L'b'}})
            CHECK(system->GetTempFileName(bs(prefix).get(), path.out()) == E_INVALIDARG);
    }
    CHECK(fresh(L"a.b~c").find(L"a.b~c") == temp.size());
}

TEST_CASE_FIXTURE(Services, "identifiers are unique and have no braces") {
    auto fresh = [&] { return stringFrom([&](BSTR* id) { return system->NewUniqueId(id); }); };
    std::wstring id = fresh();
    CHECK(id.size() == 36);
    CHECK(id.find_first_not_of(L"0123456789ABCDEF-") == std::wstring::npos);
    CHECK(id != fresh());
}

TEST_CASE_FIXTURE(Services, "the Windows version is what the desktop says") {
    ScriptedDesktop desktop;
    auto check = [&](DWORD version, LONG platform, LONG major, LONG minor) {
        desktop.windowsVersion = version;
        win32::BString text, servicePack;
        LONG told[4] = {};
        REQUIRE(system->GetOSVersion(text.out(), servicePack.out(), &told[0], &told[1], &told[2], &told[3]) ==
                S_OK);
        CHECK(told[0] == platform);
        CHECK(told[1] == major);
        CHECK(told[2] == minor);
        std::wstring begin = std::to_wstring(major) + L'.' + std::to_wstring(minor) + L'.';
        CHECK(text.text() == begin + std::to_wstring(told[3]));
        // The others are what Windows says of itself.
        OSVERSIONINFOW own = {};
        own.dwOSVersionInfoSize = sizeof own;
        REQUIRE(::GetVersionExW(&own));
        CHECK(told[3] == static_cast<LONG>(own.dwBuildNumber & 0xFFFF));
        CHECK(servicePack.text() == own.szCSDVersion);
    };
    check(ScriptedDesktop::windowsXp, 2, 5, 1);
    check(ScriptedDesktop::windows2000, 2, 5, 0);
    check(ScriptedDesktop::windows98, 1, 4, 10);
}

TEST_CASE_FIXTURE(Services, "bytes are empty when there are none") {
    CHECK(isEmpty(nullptr));
    CHECK(isEmpty(Array(VT_UI1, 0).parray));
    CHECK_FALSE(isEmpty(Array(VT_UI1, 1).parray));
    SAFEARRAY noDimension = {};
    CHECK(isEmpty(&noDimension));
    for (const auto& [one, other] : {std::pair(0u, 3u), {3u, 0u}, {2u, 3u}}) {
        SAFEARRAYBOUND bounds[2] = {{one, 0}, {other, 0}};
        win32::Variant table;
        table.parray = ::SafeArrayCreate(VT_UI1, 2, bounds);
        table.vt = VT_ARRAY | VT_UI1;
        CHECK(isEmpty(table.parray) == (one == 0 || other == 0));
    }
    VARIANT_BOOL answer = VARIANT_FALSE;
    CHECK(system->IsEmptyBytes(nullptr, &answer) == S_OK);
    CHECK(answer == VARIANT_TRUE);
}

TEST_CASE_FIXTURE(Services, "text for XML and for printing") {
    CHECK(stringFrom([&](BSTR* text) { return system->XmlEscape(bs(L"a<\u00E9").get(), text); }) ==
          L"a&lt;&#233;");
    CHECK(stringFrom([&](BSTR* text) { return system->EncodeBinaryText(bs(L"\u00FF\u0001").get(), text); }) ==
          L"/wE=");
    win32::BString text;
    CHECK(system->EncodeBinaryText(bs(L"\u0100").get(), text.out()) == E_INVALIDARG);
}

TEST_CASE_FIXTURE(Services, "pending messages run, the one that ends the program is left for its loop") {
    ran = false;
    UINT_PTR timer = ::SetTimer(nullptr, 0, 0, timerRan);
    for (int i = 0; i < 1000 && !ran; ++i) {
        REQUIRE(system->PumpEvents() == S_OK);
        if (!ran) ::Sleep(1);
    }
    ::KillTimer(nullptr, timer);
    CHECK(ran);
    ::PostQuitMessage(3);
    REQUIRE(system->PumpEvents() == S_OK);
    MSG message;
    REQUIRE(::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    CHECK(message.message == WM_QUIT);
    CHECK(message.wParam == 3);
}
