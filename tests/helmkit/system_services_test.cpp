#include "helmkit/system_services.h"

#include <doctest/doctest.h>

#include "tests/support/objects.h"
#include "tests/support/scripted_desktop.h"
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
    CHECK(first.find(L'.', temp.size()) == std::wstring::npos);
    CHECK_FALSE(win32::fileExists(first));
    win32::BString path;
    for (const wchar_t* prefix : {L"..\\x", L"a/b", L"c:", L"*"}) {
        CHECK(system->GetTempFileName(bs(prefix).get(), path.out()) == E_INVALIDARG);
    }
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
    };
    check(ScriptedDesktop::windowsXp, 2, 5, 1);
    check(ScriptedDesktop::windows2000, 2, 5, 0);
    check(ScriptedDesktop::windows98, 1, 4, 10);
}

TEST_CASE_FIXTURE(Services, "bytes are empty when there are none") {
    CHECK(isEmpty(nullptr));
    CHECK(isEmpty(Array(VT_UI1, 0).parray));
    CHECK_FALSE(isEmpty(Array(VT_UI1, 1).parray));
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
