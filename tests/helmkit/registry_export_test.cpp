#include "helmkit/registry_export.h"

#include <doctest/doctest.h>

#include "helmkit/registry_access.h"
#include "tests/support/memory_shortage.h"
#include "tests/support/native_registry.h"
#include "tests/support/objects.h"
#include "tests/support/processor_time.h"
#include "tests/support/registry_fixture.h"
#include "tests/support/replaced_import.h"
#include "tests/support/scripted_desktop.h"
#include "win32/base/flavour.h"
#include "win32/base/utf16_bytes.h"
#include "win32/registry/registry.h"

namespace {

const HKEY hklm = HKEY_LOCAL_MACHINE;

bool isWide() {
    return win32::flavour() == win32::Flavour::wide;
}

// So many texts that a caller is to get find no memory.
int withoutMemory = 0;
BSTR(WINAPI* realAllocate)(const wchar_t*, UINT);
BSTR WINAPI allocate(const wchar_t* text, UINT length) {
    return !text && withoutMemory-- > 0 ? nullptr : realAllocate(text, length);
}

struct Export : RegistryFixture {
    ScriptedDesktop desktop;

    std::wstring key(const std::wstring& path) { return helmkit::exportKey(hklm, path).text(); }
    std::wstring value(const std::wstring& path, const std::wstring& name) {
        return helmkit::exportValue(hklm, path, name).text();
    }
    // The line of one value: what follows its key's header.
    std::wstring line(const std::wstring& name) {
        const std::wstring header = L"\r\n[HKEY_LOCAL_MACHINE\\k]\r\n";
        std::wstring text = value(L"k", name);
        REQUIRE(text.substr(0, header.size()) == header);
        return text.substr(header.size());
    }
};

}  // namespace

TEST_CASE_FIXTURE(Export, "a key with its values and subkeys, in the registry's order") {
    setString(hklm, L"Top", L"a", L"x");
    setNumber(hklm, L"Top", L"b", 0x100);
    makeKey(hklm, L"Top\\Empty");
    setString(hklm, L"Top\\Full\\Deep", L"", L"default");
    CHECK(key(L"tOP\\") ==
          L"\r\n[HKEY_LOCAL_MACHINE\\tOP]\r\n"
          L"\"a\"=\"x\"\r\n"
          L"\"b\"=dword:00000100\r\n"
          L"\r\n[HKEY_LOCAL_MACHINE\\tOP\\Empty]\r\n"
          L"\r\n[HKEY_LOCAL_MACHINE\\tOP\\Full]\r\n"
          L"\r\n[HKEY_LOCAL_MACHINE\\tOP\\Full\\Deep]\r\n"
          L"@=\"default\"\r\n");
}

TEST_CASE_FIXTURE(Export, "what is missing gives no text") {
    makeKey(hklm, L"k");
    CHECK(key(L"no") == L"");
    CHECK(value(L"no", L"v") == L"");
    CHECK(value(L"k", L"v") == L"");
    CHECK(value(L"k", std::wstring(L"v\0w", 3)) == L"");
    CHECK(key(L"k") == L"\r\n[HKEY_LOCAL_MACHINE\\k]\r\n");
}

TEST_CASE_FIXTURE(Export, "roots have their long names") {
    setString(HKEY_CURRENT_USER, L"k", L"v", L"1");
    CHECK(helmkit::exportKey(HKEY_CURRENT_USER, L"k").text() ==
          L"\r\n[HKEY_CURRENT_USER\\k]\r\n\"v\"=\"1\"\r\n");
    // Wine overrides this hive in the program's own view only: elsewhere the key is a real one.
    const std::wstring own = L"Quillon.Export.Test";
    win32::RegistryKey key;
    REQUIRE(key.create(HKEY_CLASSES_ROOT, own, KEY_ALL_ACCESS) == ERROR_SUCCESS);
    REQUIRE(key.set(L"v", REG_SZ, win32::bytesOf({L"2\0", 2})) == ERROR_SUCCESS);
    const std::wstring header = L"\r\n[HKEY_CLASSES_ROOT\\" + own + L"]\r\n\"v\"=\"2\"\r\n";
    CHECK(helmkit::exportKey(HKEY_CLASSES_ROOT, own).text() == header);
    CHECK(helmkit::exportValue(HKEY_CLASSES_ROOT, own, L"v").text() == header);
    CHECK(native<NTSTATUS(WINAPI*)(HANDLE)>("ZwDeleteKey")(key.get()) >= 0);
}

TEST_CASE_FIXTURE(Export, "expandable strings go as the bytes of this family's header") {
    setString(hklm, L"k", L"e", L"%HOME%", REG_EXPAND_SZ);
    setBytes(hklm, L"k", L"m", REG_MULTI_SZ, win32::bytesOf({L"a\0\0", 3}));
    CHECK(line(L"e") == L"\"e\"=hex(2):25,00,48,00,4f,00,4d,00,45,00,25,00,00,00\r\n");
    CHECK(line(L"m") == L"\"m\"=hex(7):61,00,00,00,00,00\r\n");
    desktop.windowsVersion = ScriptedDesktop::windows98;
    CHECK(line(L"e") == L"\"e\"=hex(2):25,48,4f,4d,45,25,00\r\n");
    CHECK(line(L"m") == L"\"m\"=hex(7):61,00,00\r\n");
}

TEST_CASE_FIXTURE(Export, "strings that quotes cannot carry go as bytes") {
    setBytes(hklm, L"k", L"none", REG_SZ, std::string("a\0b\0", 4));
    setBytes(hklm, L"k", L"two", REG_SZ, std::string("a\0\0\0\0\0", 6));
    setBytes(hklm, L"k", L"inner", REG_SZ, std::string("a\0\0\0b\0\0\0", 8));
    setBytes(hklm, L"k", L"empty", REG_SZ, "");
    setString(hklm, L"k", L"break", L"a\r\nb");
    CHECK(line(L"none") == L"\"none\"=hex(1):61,00,62,00\r\n");
    CHECK(line(L"two") == L"\"two\"=hex(1):61,00,00,00,00,00\r\n");
    CHECK(line(L"inner") == L"\"inner\"=hex(1):61,00,00,00,62,00,00,00\r\n");
    CHECK(line(L"empty") == L"\"empty\"=hex(1):\r\n");
    CHECK(line(L"break") == L"\"break\"=hex(1):61,00,0d,00,0a,00,62,00,00,00\r\n");
    if (isWide()) {
        setBytes(hklm, L"k", L"odd", REG_SZ, std::string("a\0b\0\0", 5));
        CHECK(line(L"odd") == L"\"odd\"=hex(1):61,00,62,00,00\r\n");
    }
}

TEST_CASE_FIXTURE(Export, "other types and wrong sizes go as bytes") {
    setBytes(hklm, L"k", L"t0", REG_NONE, "Value");
    setBytes(hklm, L"k", L"t4", REG_DWORD, std::string("\1\2\3", 3));
    setBytes(hklm, L"k", L"tb", 11, std::string("\1\2\3\4\5\6\7\10", 8));
    setBytes(hklm, L"k", L"tx", 0xABCD, "V");
    setBytes(hklm, L"k", L"t3", REG_BINARY, "\x11");
    CHECK(line(L"t0") == L"\"t0\"=hex(0):56,61,6c,75,65\r\n");
    CHECK(line(L"t4") == L"\"t4\"=hex(4):01,02,03\r\n");
    CHECK(line(L"tb") == L"\"tb\"=hex(b):01,02,03,04,05,06,07,08\r\n");
    CHECK(line(L"tx") == L"\"tx\"=hex(abcd):56\r\n");
    CHECK(line(L"t3") == L"\"t3\"=hex:11\r\n");
}

TEST_CASE_FIXTURE(Export, "names that cannot be written are named in a comment, the others are written") {
    setString(hklm, L"k", L"good", L"1");
    setString(hklm, L"k", L"line\r\nbreak", L"1");
    makeKey(hklm, L"k\\cr\rkey");
    makeKey(hklm, L"k\\zlast");
    CHECK(key(L"k") ==
          L"\r\n[HKEY_LOCAL_MACHINE\\k]\r\n"
          L"\"good\"=\"1\"\r\n"
          L"; not exported: [HKEY_LOCAL_MACHINE\\k] \"line\\u000d\\u000abreak\"\r\n"
          L"; not exported: [HKEY_LOCAL_MACHINE\\k\\cr\\u000dkey]\r\n"
          L"\r\n[HKEY_LOCAL_MACHINE\\k\\zlast]\r\n");
    CHECK(line(L"line\r\nbreak") ==
          L"; not exported: [HKEY_LOCAL_MACHINE\\k] \"line\\u000d\\u000abreak\"\r\n");
}

TEST_CASE_FIXTURE(Export, "a hidden name does not borrow another value's data") {
    setString(hklm, L"k", L"a", L"innocent");
    setCounted(hklm, L"k", std::wstring(L"a\0b", 3), REG_SZ, win32::bytesOf({L"hidden\0", 7}));
    makeCountedKey(hklm, L"k", std::wstring(L"s\0t", 3));
    setString(hklm, L"k\\s", L"v", L"other key");
    std::wstring text = key(L"k");
    CHECK(text.find(L"\"a\"=\"innocent\"\r\n") != std::wstring::npos);
    CHECK(text.find(L"\"v\"=\"other key\"") == text.rfind(L"\"v\"=\"other key\""));
    if (!isWide()) return;
    CHECK(text.find(L"; not exported: [HKEY_LOCAL_MACHINE\\k] \"a\\u0000b\"\r\n") != std::wstring::npos);
    CHECK(text.find(L"; not exported: [HKEY_LOCAL_MACHINE\\k\\s\\u0000t]\r\n") != std::wstring::npos);
    CHECK(text.find(L"hidden") == std::wstring::npos);
}

TEST_CASE_FIXTURE(Export, "links are named, not followed") {
    if (!isWide()) return;  // Windows 9x has no links
    makeKey(hklm, L"k\\sub");
    makeLink(hklm, L"k\\sub\\loop", hklm, L"k");
    CHECK(key(L"k") ==
          L"\r\n[HKEY_LOCAL_MACHINE\\k]\r\n"
          L"\r\n[HKEY_LOCAL_MACHINE\\k\\sub]\r\n"
          L"; not exported: [HKEY_LOCAL_MACHINE\\k\\sub\\loop] link\r\n");
}

TEST_CASE_FIXTURE(Export, "the operations hand back hive and path as they came") {
    setString(hklm, L"Key", L"v", L"1");
    auto access = make<helmkit::server::RegistryAccess>();
    LONG hive = static_cast<LONG>(0x80000002);
    win32::BString path(L"kEY");
    BSTR given = path.get();
    CHECK(stringFrom([&](BSTR* text) { return access->ExportKey(&hive, &given, text); }) ==
          L"\r\n[HKEY_LOCAL_MACHINE\\kEY]\r\n\"v\"=\"1\"\r\n");
    CHECK(hive == static_cast<LONG>(0x80000002));
    CHECK(path.text() == L"kEY");
    CHECK(stringFrom([&](BSTR* text) { return access->ExportValue(hive, given, bs(L"V").get(), text); }) ==
          L"\r\n[HKEY_LOCAL_MACHINE\\kEY]\r\n\"V\"=\"1\"\r\n");
}

TEST_CASE_FIXTURE(Export, "many and large values take a time that nobody notices") {
    win32::RegistryKey opened;
    REQUIRE(opened.create(hklm, L"k", KEY_ALL_ACCESS) == 0);
    for (int i = 0; i < 10000; ++i)
        opened.set(std::to_wstring(100000 + i), REG_BINARY, std::string(100, 'x'));
    opened.set(L"big", REG_BINARY, std::string(1 << 20, 'y'));
    opened.set(L"text", REG_SZ, win32::bytesOf(std::wstring(1 << 20, L'z') + L'\0'));
    const DWORD start = processorTime();
    std::wstring text = key(L"k");
    const DWORD took = processorTime() - start;
    MESSAGE("exported characters: " << text.size() << ", ms: " << took);
    CHECK(text.size() > 7000000);
    CHECK(took < 10000);
}

TEST_CASE_FIXTURE(Export, "a large value takes its text and little more, whatever its type") {
    const size_t size = 4 << 20;
    setString(hklm, L"k", L"small", L"1");
    SUBCASE("bytes") {
        setBytes(hklm, L"k", L"large", REG_BINARY, std::string(size, 'x'));
    }
    SUBCASE("a text that quotes carry") {
        setString(hklm, L"k", L"large", std::wstring(size / 2 - 1, L'x'));
    }
    SUBCASE("a text that quotes cannot carry") {
        setBytes(hklm, L"k", L"large", REG_SZ, std::string(size, '\0'));
    }
    if (valueCount(hklm, L"k") == 1) return;
    MemoryPeak peak;
    const helmkit::TextPieces text = helmkit::exportKey(hklm, L"k");
    const size_t textSize = text.length() * sizeof(wchar_t);
    CHECK(text.length() > size / 2);
    // In the ANSI flavour a text is converted from the code page.
    CHECK(peak.bytes() < textSize + size + (isWide() ? size / 4 : 3 * size));
}

TEST_CASE_FIXTURE(Export, "a value that is left out takes no room while the next ones are written") {
    const size_t size = 8 << 20, next = 1 << 20;
    setBytes(hklm, L"k", L"large", REG_BINARY, std::string(size, 'x'));
    setBytes(hklm, L"k", L"next", REG_BINARY, std::string(next, 'x'));
    MemoryPeak peak;
    const helmkit::TextPieces text = helmkit::exportKey(hklm, L"k", next);
    CHECK(text.length() * sizeof(wchar_t) > 6 * next);
    CHECK(peak.bytes() < size + 2 * next);
}

TEST_CASE_FIXTURE(Export, "a value that memory is short for is left out by name, all else is written") {
    setString(hklm, L"k", L"a", L"1");
    setBytes(hklm, L"k", L"large", REG_BINARY, std::string(8 << 20, 'x'));
    setBytes(hklm, L"k", L"wide", REG_BINARY, std::string(1 << 20, 'x'));
    setString(hklm, L"k", L"z", L"2");
    setString(hklm, L"k\\sub", L"s", L"3");
    const std::wstring expected =
        L"\r\n[HKEY_LOCAL_MACHINE\\k]\r\n"
        L"\"a\"=\"1\"\r\n"
        L"; not exported: [HKEY_LOCAL_MACHINE\\k] \"large\"\r\n"
        L"; not exported: [HKEY_LOCAL_MACHINE\\k] \"wide\"\r\n"
        L"\"z\"=\"2\"\r\n"
        L"\r\n[HKEY_LOCAL_MACHINE\\k\\sub]\r\n"
        L"\"s\"=\"3\"\r\n";
    MemoryShortage shortage(2 << 20);
    CHECK(key(L"k") == expected);
    CHECK(shortage.wasFelt());
    CHECK(line(L"wide") == L"; not exported: [HKEY_LOCAL_MACHINE\\k] \"wide\"\r\n");
    CHECK(line(L"z") == L"\"z\"=\"2\"\r\n");
}

TEST_CASE_FIXTURE(Export,
                  "where the text finds no memory it is tried with ever smaller values, down to 4 KiB") {
    const size_t sizes[] = {1 << 12, (1 << 12) + 1, 1 << 16, (1 << 16) + 1, 1 << 20, (1 << 20) + 1};
    for (size_t size : sizes) setBytes(hklm, L"k", std::to_wstring(size), REG_BINARY, std::string(size, 'x'));
    const ReplacedImport scarce("SysAllocStringLen", &allocate, realAllocate);
    auto access = make<helmkit::server::RegistryAccess>();
    LONG hive = static_cast<LONG>(0x80000002);
    const win32::BString path(L"k");
    const struct {
        int failures;
        size_t largest;
    } rows[] = {{0, SIZE_MAX}, {1, 16 << 20}, {2, 1 << 20}, {3, 1 << 16}, {4, 1 << 12}};
    for (const auto& row : rows) {
        CAPTURE(row.failures);
        BSTR given = path.get();
        withoutMemory = row.failures;
        const std::wstring text =
            stringFrom([&](BSTR* text) { return access->ExportKey(&hive, &given, text); });
        for (size_t size : sizes) {
            const bool isOmitted = text.find(L"] \"" + std::to_wstring(size) + L"\"") != std::wstring::npos;
            CHECK(isOmitted == (size > row.largest));
        }
    }
    BSTR given = path.get();
    win32::BString text;
    withoutMemory = 5;
    CHECK(access->ExportKey(&hive, &given, text.out()) == E_OUTOFMEMORY);
    withoutMemory = 2;
    const std::wstring name = std::to_wstring(sizes[5]);
    const std::wstring one =
        stringFrom([&](BSTR* text) { return access->ExportValue(hive, given, bs(name).get(), text); });
    CHECK(one ==
          L"\r\n[HKEY_LOCAL_MACHINE\\k]\r\n; not exported: [HKEY_LOCAL_MACHINE\\k] \"" + name + L"\"\r\n");
    withoutMemory = 0;
}

TEST_CASE("a text in pieces goes on in its last one until that is long, and is moved as one") {
    helmkit::TextPieces pieces;
    CHECK(pieces.length() == 0);
    CHECK(pieces.text().empty());
    std::wstring& first = pieces.end();
    first.assign((1 << 18) - 1, L'a');
    CHECK(&pieces.end() == &first);
    first += L'b';
    std::wstring& second = pieces.end();
    CHECK(&second != &first);
    second = L"cd";
    CHECK(&pieces.end() == &second);
    pieces.startPiece() = L"e";
    const std::wstring whole = std::wstring((1 << 18) - 1, L'a') + L"bcde";
    CHECK(pieces.length() == whole.size());
    std::wstring moved(whole.size() + 1, L'#');
    bool isSame = pieces.text() == whole;
    CHECK(isSame);
    pieces.moveTo(moved.data());
    isSame = moved == whole + L'#';
    CHECK(isSame);
    CHECK(pieces.length() == 0);
}
