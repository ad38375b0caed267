// What Windows refuses in the registry: reading and listing raise, writing and deleting tell it in the
// status, an export names it in a comment and goes on.
#include <functional>

#include "helmkit/registry_export.h"
#include "tests/helmkit/registry_access_fixture.h"
#include "tests/support/open_handles.h"
#include "tests/support/replaced_import.h"
#include "tests/support/scripted_desktop.h"
#include "win32/base/error.h"
#include "win32/system/system.h"

using namespace registry_test;

namespace {

// The key that cannot be opened by this path; the value whose data cannot be read or written, and whether its
// name cannot be read either.
std::wstring closedKey, closedValue;
bool isNameClosed = false;
// What Windows says where it refuses, whether writing is refused too, and how often a key was opened.
LONG refusal = ERROR_ACCESS_DENIED;
bool isWritable = false;
int openings = 0;
// The keys from this position on cannot be listed.
DWORD listedKeys = MAXDWORD;

std::wstring wide(const wchar_t* text) {
    return text ? text : L"";
}
std::wstring wide(const char* text) {
    return text ? win32::fromAnsi(text) : L"";
}

template <class Char>
struct Real {
    static inline LONG(WINAPI* openKey)(HKEY, const Char*, DWORD, REGSAM, HKEY*);
    static inline LONG(WINAPI* queryValue)(HKEY, const Char*, DWORD*, DWORD*, BYTE*, DWORD*);
    static inline LONG(WINAPI* setValue)(HKEY, const Char*, DWORD, DWORD, const BYTE*, DWORD);
    static inline LONG(WINAPI* enumValue)(HKEY, DWORD, Char*, DWORD*, DWORD*, DWORD*, BYTE*, DWORD*);
    static inline LONG(WINAPI* enumKey)(HKEY, DWORD, Char*, DWORD*, DWORD*, Char*, DWORD*, FILETIME*);
};

template <class Char>
LONG WINAPI openKey(HKEY root, const Char* path, DWORD options, REGSAM access, HKEY* key) {
    ++openings;
    if (wide(path) == closedKey) return refusal;
    return Real<Char>::openKey(root, path, options, access, key);
}

template <class Char>
LONG WINAPI queryValue(HKEY key, const Char* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size) {
    if (wide(name) == closedValue) return refusal;
    return Real<Char>::queryValue(key, name, reserved, type, data, size);
}

template <class Char>
LONG WINAPI setValue(HKEY key, const Char* name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    if (wide(name) == closedValue && !isWritable) return refusal;
    return Real<Char>::setValue(key, name, reserved, type, data, size);
}

template <class Char>
LONG WINAPI enumValue(HKEY key, DWORD position, Char* name, DWORD* length, DWORD* reserved, DWORD* type,
                      BYTE* data, DWORD* size) {
    const LONG error = Real<Char>::enumValue(key, position, name, length, reserved, type, data, size);
    const bool isClosed = !error && wide(name) == closedValue && (data || isNameClosed);
    return isClosed ? refusal : error;
}

template <class Char>
LONG WINAPI enumKey(HKEY key, DWORD position, Char* name, DWORD* length, DWORD* reserved, Char* group,
                    DWORD* groupLength, FILETIME* written) {
    if (position >= listedKeys) return refusal;
    return Real<Char>::enumKey(key, position, name, length, reserved, group, groupLength, written);
}

struct Refusing : Registry {
    ScriptedDesktop desktop;
    ReplacedImport calls[10] = {
        {"RegOpenKeyExW", &openKey<wchar_t>, Real<wchar_t>::openKey},
        {"RegOpenKeyExA", &openKey<char>, Real<char>::openKey},
        {"RegQueryValueExW", &queryValue<wchar_t>, Real<wchar_t>::queryValue},
        {"RegQueryValueExA", &queryValue<char>, Real<char>::queryValue},
        {"RegSetValueExW", &setValue<wchar_t>, Real<wchar_t>::setValue},
        {"RegSetValueExA", &setValue<char>, Real<char>::setValue},
        {"RegEnumValueW", &enumValue<wchar_t>, Real<wchar_t>::enumValue},
        {"RegEnumValueA", &enumValue<char>, Real<char>::enumValue},
        {"RegEnumKeyExW", &enumKey<wchar_t>, Real<wchar_t>::enumKey},
        {"RegEnumKeyExA", &enumKey<char>, Real<char>::enumKey},
    };

    Refusing() {
        for (const wchar_t* name : {L"a", L"b", L"c"}) setString(HKEY_LOCAL_MACHINE, L"top", name, name);
        for (const wchar_t* name : {L"1", L"2", L"3"})
            makeKey(HKEY_LOCAL_MACHINE, L"top\\" + std::wstring(name));
    }
    ~Refusing() { refuse({}, {}); }
    static void refuse(const std::wstring& key, const std::wstring& value, bool nameToo = false) {
        // Empty names have a meaning of their own.
        closedKey = key.empty() ? L"(none)" : key;
        closedValue = value.empty() ? L"(none)" : value;
        isNameClosed = nameToo;
        refusal = ERROR_ACCESS_DENIED;
        isWritable = false;
        listedKeys = MAXDWORD;
    }

    // Each operation that reads, with what it is to leave behind where it fails.
    HRESULT readValue() {
        win32::BString data(L"left");
        status = 7;
        const HRESULT result = access->ReadValue(hklm, bs(L"top").get(), bs(L"b").get(), data.out(), &status);
        CHECK(data.text().empty());
        CHECK(status == 0);
        return result;
    }
    HRESULT valueType() {
        LONG type = 7;
        const HRESULT result = access->ValueType(hklm, bs(L"top").get(), bs(L"b").get(), &type);
        CHECK(type == -1);
        return result;
    }
    HRESULT enumValues() {
        win32::ComPtr<IKeyedList> names;
        const HRESULT result = access->EnumValues(hklm, bs(L"top").get(), names.out());
        CHECK_FALSE(names);
        return result;
    }
    HRESULT enumSubkeys() {
        win32::ComPtr<IKeyedList> names;
        const HRESULT result = access->EnumSubkeys(hklm, bs(L"top").get(), names.out());
        CHECK_FALSE(names);
        return result;
    }
    static std::wstring description() {
        win32::ComPtr<IErrorInfo> info;
        REQUIRE(::GetErrorInfo(0, info.out()) == S_OK);
        win32::BString text;
        REQUIRE(info->GetDescription(text.out()) == S_OK);
        return text.text();
    }
    static void checkRaised(HRESULT result) {
        CHECK(result == E_ACCESSDENIED);
        CHECK(description().find(L"top") == 0);
    }
    static std::wstring keyHeader(const std::wstring& below = {}) {
        return L"\r\n[HKEY_LOCAL_MACHINE\\top" + below + L"]\r\n";
    }
    static std::wstring comment(const std::wstring& below = {}) {
        return L"; not exported: [HKEY_LOCAL_MACHINE\\top" + below + L"] " +
               win32::systemDescription(ERROR_ACCESS_DENIED) + L"\r\n";
    }
    static std::wstring exported() { return helmkit::exportKey(HKEY_LOCAL_MACHINE, L"top").text(); }
    static std::wstring exportedValue() {
        return helmkit::exportValue(HKEY_LOCAL_MACHINE, L"top", L"b").text();
    }
};

const std::wstring subkeys =
    L"\r\n[HKEY_LOCAL_MACHINE\\top\\1]\r\n\r\n[HKEY_LOCAL_MACHINE\\top\\2]\r\n"
    L"\r\n[HKEY_LOCAL_MACHINE\\top\\3]\r\n";

}  // namespace

TEST_CASE_FIXTURE(Refusing, "a key that may not be opened raises in every operation that reads") {
    refuse(L"top", {});
    checkRaised(readValue());
    checkRaised(valueType());
    checkRaised(enumValues());
    checkRaised(enumSubkeys());
}

TEST_CASE_FIXTURE(Refusing, "a value that may not be read raises, alone and in the midst of a list") {
    refuse({}, L"b", true);
    checkRaised(readValue());
    checkRaised(valueType());
    checkRaised(enumValues());
    CHECK(read(L"c", L"top") == L"c");
}

TEST_CASE_FIXTURE(Refusing, "writing and deleting tell a refusal in the status, and nothing has changed") {
    for (const auto& [key, value] : {std::pair(L"top", L""), std::pair(L"", L"b")}) {
        refuse(key, value);
        CHECK(write(L"b", L"new", L"top") == ERROR_ACCESS_DENIED);
        if (*value) continue;
        CHECK(deleteValue(L"b", L"top") == ERROR_ACCESS_DENIED);
        CHECK(deleteKey(L"top") == ERROR_ACCESS_DENIED);
        CHECK(deleteKey(L"top\\1") == ERROR_ACCESS_DENIED);
    }
    refuse({}, {});
    CHECK(read(L"b", L"top") == L"b");
    CHECK(subkeys(L"top") == Names{L"1", L"2", L"3"});
}

TEST_CASE_FIXTURE(Refusing, "an export names a key that may not be opened, and the others follow") {
    const std::wstring values = L"\"a\"=\"a\"\r\n\"b\"=\"b\"\r\n\"c\"=\"c\"\r\n";
    refuse(L"2", {});
    CHECK(exported() == keyHeader() + values + keyHeader(L"\\1") + comment(L"\\2") + keyHeader(L"\\3"));
    refuse(L"top", {});
    CHECK(exported() == comment());
    CHECK(exportedValue() == comment());
}

TEST_CASE_FIXTURE(Refusing, "an export names a value that may not be read, and goes on as far as it can") {
    refuse({}, L"b");
    CHECK(exported() == keyHeader() + L"\"a\"=\"a\"\r\n; not exported: [HKEY_LOCAL_MACHINE\\top] \"b\"\r\n" +
                            L"\"c\"=\"c\"\r\n" + ::subkeys);
    CHECK(exportedValue() == comment());
    // Without a name there is no telling what follows.
    refuse({}, L"b", true);
    CHECK(exported() == keyHeader() + L"\"a\"=\"a\"\r\n" + comment() + ::subkeys);
}

TEST_CASE_FIXTURE(Refusing, "a value that may not be read is not written either") {
    refuse({}, L"b");
    isWritable = true;
    CHECK(write(L"b", L"new", L"top") == ERROR_ACCESS_DENIED);
    refuse({}, {});
    CHECK(read(L"b", L"top") == L"b");
}

TEST_CASE_FIXTURE(Refusing, "an export names the key whose keys cannot be listed, behind those that were") {
    const std::wstring values = L"\"a\"=\"a\"\r\n\"b\"=\"b\"\r\n\"c\"=\"c\"\r\n";
    refuse({}, {});
    listedKeys = 1;
    CHECK(exported() == keyHeader() + values + keyHeader(L"\\1") + comment());
    checkRaised(enumSubkeys());
}

TEST_CASE_FIXTURE(Refusing, "what has gone since it was listed is left out of an export, and is no error") {
    for (LONG gone : {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_KEY_DELETED}) {
        refuse(L"2", {});
        refusal = gone;
        CHECK(exported().find(L"not exported") == std::wstring::npos);
        CHECK(exported().find(L"\\3]") != std::wstring::npos);
        refuse(L"top", {});
        refusal = gone;
        CHECK(exported().empty());
        CHECK(exportedValue().empty());
        CHECK(read(L"b", L"top").empty());
        CHECK(status == ERROR_FILE_NOT_FOUND);
        CHECK(type(L"b", L"top") == -1);
        CHECK(values(L"top").empty());
        CHECK(Registry::subkeys(L"top").empty());
        refuse({}, L"b");
        refusal = gone;
        CHECK(exportedValue().empty());
    }
}

TEST_CASE_FIXTURE(Registry, "a name that means another one is told from one that is not there") {
    makeKey(HKEY_LOCAL_MACHINE, run);
    const std::wstring name(L"a\0b", 3);
    CHECK(read(name) == L"");
    CHECK(status == ERROR_INVALID_NAME);
    CHECK(read(L"a", name) == L"");
    CHECK(status == ERROR_INVALID_NAME);
    CHECK(type(L"a", name) == -1);
    CHECK(values(name).empty());
    CHECK(subkeys(name).empty());
    CHECK(write(name, L"x") == ERROR_INVALID_NAME);
    CHECK(write(L"a", L"x", name) == ERROR_INVALID_NAME);
    CHECK(helmkit::exportValue(HKEY_LOCAL_MACHINE, name, L"a").text().empty());
    CHECK(helmkit::exportKey(HKEY_LOCAL_MACHINE, name).text() ==
          L"; not exported: [HKEY_LOCAL_MACHINE\\a\\u0000b] " + win32::systemDescription(ERROR_INVALID_NAME) +
              L"\r\n");
}

TEST_CASE_FIXTURE(Registry, "what stands under a name that cannot be written is named in its place") {
    ScriptedDesktop desktop;
    setString(HKEY_LOCAL_MACHINE, L"cr\rkey", L"v", L"1");
    makeKey(HKEY_LOCAL_MACHINE, L"cr\rkey\\below");
    const std::wstring comment = L"; not exported: [HKEY_LOCAL_MACHINE\\cr\\u000dkey]\r\n";
    CHECK(helmkit::exportKey(HKEY_LOCAL_MACHINE, L"cr\rkey").text() == comment);
    CHECK(helmkit::exportValue(HKEY_LOCAL_MACHINE, L"cr\rkey", L"v").text() == comment);
}

TEST_CASE_FIXTURE(Refusing,
                  "the key read last stays open, until something is written or another one is read") {
    setString(HKEY_CURRENT_USER, L"top", L"a", L"user");
    makeKey(HKEY_LOCAL_MACHINE, L"other");
    refuse({}, {});
    const auto openingsOf = [](const std::function<void()>& action) {
        openings = 0;
        action();
        return openings;
    };
    const auto readOnce = [&] { CHECK(read(L"a", L"top") == L"a"); };
    CHECK(openingsOf(readOnce) == 1);
    CHECK(openingsOf(readOnce) == 0);
    CHECK(openingsOf([&] { type(L"b", L"top"); }) == 0);
    CHECK(openingsOf([&] { read(L"a", L"other"); }) == 1);
    CHECK(openingsOf(readOnce) == 1);
    CHECK(stringFrom([&](BSTR* data) {
              return access->ReadValue(hkcu, bs(L"top").get(), bs(L"a").get(), data, &status);
          }) == L"user");
    readOnce();
    const int before = openHandles();
    write(L"x", L"1", L"other");
    CHECK(openHandles() == before - 1);
    readOnce();
    deleteValue(L"x", L"other");
    CHECK(openHandles() == before - 1);
    readOnce();
    deleteKey(L"none\\other");
    CHECK(openHandles() == before - 1);
}

TEST_CASE_FIXTURE(Registry, "every operation refuses what is no hive of the three") {
    for (LONG hive : {0L, 1L, static_cast<LONG>(0x7FFFFFFF), static_cast<LONG>(0x80000003),
                      static_cast<LONG>(0x80000004), static_cast<LONG>(0x80000005), -1L}) {
        CAPTURE(hive);
        const win32::BString key = bs(L"k"), name = bs(L"v"), data = bs(L"d");
        win32::BString text;
        win32::ComPtr<IKeyedList> names;
        LONG type = 0, given = hive;
        BSTR path = key.get();
        CHECK(access->ReadValue(hive, key.get(), name.get(), text.out(), &status) == E_INVALIDARG);
        CHECK(access->WriteValue(hive, key.get(), name.get(), data.get(), &status) == E_INVALIDARG);
        CHECK(access->DeleteValue(hive, key.get(), name.get(), &status) == E_INVALIDARG);
        CHECK(access->DeleteKey(hive, key.get(), &status) == E_INVALIDARG);
        CHECK(access->EnumSubkeys(hive, key.get(), names.out()) == E_INVALIDARG);
        CHECK(access->EnumValues(hive, key.get(), names.out()) == E_INVALIDARG);
        CHECK(access->ExportKey(&given, &path, text.out()) == E_INVALIDARG);
        CHECK(access->ExportValue(hive, key.get(), name.get(), text.out()) == E_INVALIDARG);
        CHECK(access->ValueType(hive, key.get(), name.get(), &type) == E_INVALIDARG);
        CHECK_FALSE(names);
        CHECK_FALSE(text.get());
    }
}
