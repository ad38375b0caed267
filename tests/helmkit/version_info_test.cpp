#include <doctest/doctest.h>

#include "helmkit/system_services.h"
#include "tests/support/objects.h"
#include "tests/support/temp_folder.h"
#include "win32/base/utf16_bytes.h"
#include "win32/files/file_version.h"
#include "win32/files/version_resource.h"
#include "win32/system/system.h"

namespace {

struct Entry {
    std::wstring name, text;
};
struct Table {
    std::wstring key;
    std::vector<Entry> strings;
};

// A node of a version block: lengths, type, key, value, children.
std::string node(const std::wstring& key, WORD type, const std::string& value, WORD valueLength,
                 const std::string& children) {
    std::string bytes = std::string(6, '\0') + win32::bytesOf(key + L'\0');
    bytes.resize((bytes.size() + 3) & ~size_t{3});
    bytes += value;
    if (!children.empty()) bytes.resize((bytes.size() + 3) & ~size_t{3});
    bytes += children;
    WORD header[] = {static_cast<WORD>(bytes.size()), valueLength, type};
    bytes.replace(0, 6, reinterpret_cast<char*>(header), 6);
    return bytes;
}

void appendAligned(std::string& bytes, const std::string& part) {
    bytes.resize((bytes.size() + 3) & ~size_t{3});
    bytes += part;
}

std::string tables(const std::vector<Table>& all) {
    std::string parts;
    for (const Table& table : all) {
        std::string strings;
        for (const Entry& entry : table.strings) {
            appendAligned(strings, node(entry.name, 1, win32::bytesOf(entry.text + L'\0'),
                                        static_cast<WORD>(entry.text.size() + 1), {}));
        }
        appendAligned(parts, node(table.key, 1, {}, 0, strings));
    }
    return node(L"StringFileInfo", 1, {}, 0, parts);
}

std::string block(const std::string& translations, const std::vector<Table>& all) {
    VS_FIXEDFILEINFO fixed = {};
    fixed.dwSignature = VS_FFI_SIGNATURE;
    std::string children = tables(all);
    if (!translations.empty()) {
        std::string pairs = node(L"Translation", 0, translations, static_cast<WORD>(translations.size()), {});
        appendAligned(children, node(L"VarFileInfo", 1, {}, 0, pairs));
    }
    return node(L"VS_VERSION_INFO", 0, {reinterpret_cast<char*>(&fixed), sizeof fixed}, sizeof fixed,
                children);
}

// This program's own file with another version resource.
struct Versions {
    TempFolder folder;
    std::wstring path = folder.file(L"program.exe");

    void give(const std::string& bytes) {
        TempFolder::write(path, TempFolder::read(shortProgram()));
        HANDLE update = ::BeginUpdateResourceW(path.c_str(), FALSE);
        REQUIRE(update);
        REQUIRE(::UpdateResourceW(update, MAKEINTRESOURCEW(16), MAKEINTRESOURCEW(1), 0x0409,
                                  const_cast<char*>(bytes.data()), static_cast<DWORD>(bytes.size())));
        REQUIRE(::EndUpdateResourceW(update, FALSE));
    }
    static std::wstring shortProgram() { return win32::moduleFolder(nullptr) + L"\\version_fixture.exe"; }

    std::optional<std::wstring> string(const std::wstring& name, LANGID language = 0x0409) {
        return win32::VersionResource(path, language).string(name);
    }
};

const std::string english = std::string("\x09\x04\xb0\x04", 4);
const std::string german = std::string("\x07\x04\xb0\x04", 4);
const std::string neutral = std::string("\x00\x00\xb0\x04", 4);
const std::wstring name = L"FileDescription";

}  // namespace

TEST_CASE_FIXTURE(Versions, "strings of the named table, names in any letter case") {
    give(block(english, {{L"040904b0", {{name, L"Editor"}, {L"CompanyName", L"Microsoft Corporation"}}}}));
    CHECK(string(L"FileDescription") == L"Editor");
    CHECK(string(L"filedescription") == L"Editor");
    CHECK(string(L"CompanyName") == L"Microsoft Corporation");
    CHECK_FALSE(string(L"ProductName"));
    CHECK_FALSE(string(L""));
    CHECK_FALSE(string(L"FileDescription\\x"));
    CHECK_FALSE(string(std::wstring(L"FileDescription\0x", 17)));
}

TEST_CASE_FIXTURE(Versions, "a translation that names a missing table hides nothing") {
    const char* translations[] = {"neutral", "german", "none"};
    const std::string pairs[] = {neutral, german, ""};
    for (int i = 0; i < 3; ++i) {
        CAPTURE(translations[i]);
        give(block(pairs[i], {{L"040904E4", {{name, L"found"}}}}));
        CHECK(string(name) == L"found");
        give(block(pairs[i], {{L"FFFF0000", {{name, L"walked to"}}}}));
        CHECK(string(name) == L"walked to");
    }
}

TEST_CASE_FIXTURE(Versions, "the user's language goes first, decided string by string") {
    give(block(english + german, {{L"040904b0", {{name, L"English"}, {L"CompanyName", L"Only English"}}},
                                  {L"040704b0", {{name, L"Deutsch"}, {L"CompanyName", L" "}}}}));
    CHECK(string(name) == L"English");
    CHECK(string(name, 0x0407) == L"Deutsch");
    CHECK(string(name, 0x0807) == L"Deutsch");
    CHECK(string(name, 0x0419) == L"English");
    CHECK(string(L"CompanyName", 0x0407) == L"Only English");
}

TEST_CASE_FIXTURE(Versions, "blank only when blank in every table") {
    give(block(english, {{L"040904b0", {{name, L"  "}}}, {L"041904b0", {{name, L""}}}}));
    CHECK(string(name) == L"  ");
    give(block(english, {{L"040904b0", {{name, L"  "}}}, {L"041904b0", {{name, L"text"}}}}));
    CHECK(string(name) == L"text");
}

TEST_CASE_FIXTURE(Versions, "a string ends at its first NUL") {
    give(block(english, {{L"040904b0", {{name, std::wstring(L"text\0more", 9)}}}}));
    CHECK(string(name) == L"text");
}

TEST_CASE_FIXTURE(Versions, "a file without strings, a missing one and an empty path give none") {
    TempFolder::write(path, "no program");
    CHECK_FALSE(string(name));
    CHECK_FALSE(win32::VersionResource(folder.file(L"gone.exe")).string(name));
    CHECK_FALSE(win32::VersionResource(L"").string(name));
    CHECK_FALSE(win32::VersionResource(folder.path()).string(name));
}

TEST_CASE("strings belong to a file that is named in full, never to one that a search would find") {
    for (const wchar_t* path :
         {L"shell32", L"shell32.dll", L"SHELL32.DLL", L".\\shell32.dll", L"shell32.dll\\", L"C:shell32.dll",
          L"\\windows\\system32\\shell32.dll", L"system32\\shell32.dll"}) {
        CAPTURE(std::wstring(path));
        CHECK_FALSE(win32::VersionResource(path).string(L"CompanyName"));
    }
}

TEST_CASE_FIXTURE(Versions, "a file without extension does not borrow the strings of the library beside it") {
    path = folder.file(L"tool.dll");
    give(block(english, {{L"040904b0", {{name, L"Library"}}}}));
    CHECK(string(name) == L"Library");
    TempFolder::write(folder.file(L"tool"), "no program");
    CHECK_FALSE(win32::VersionResource(folder.file(L"tool")).string(name));
    CHECK_FALSE(win32::VersionResource(folder.file(L"gone\\..\\other")).string(name));
    ::CopyFileW(path.c_str(), folder.file(L"other").c_str(), FALSE);
    CHECK(win32::VersionResource(folder.file(L"other")).string(name) == L"Library");
}

TEST_CASE_FIXTURE(Versions, "a file's version is that of a whole record with its mark") {
    VS_FIXEDFILEINFO fixed = {};
    fixed.dwSignature = VS_FFI_SIGNATURE;
    fixed.dwFileVersionMS = 0x00050001;
    fixed.dwFileVersionLS = 0x0A28FFFF;
    const auto versionWith = [&](WORD size) {
        give(node(L"VS_VERSION_INFO", 0, {reinterpret_cast<char*>(&fixed), size}, size, {}));
        return win32::fileVersion(path);
    };
    CHECK(versionWith(sizeof fixed) == L"5.1.2600.65535");
    CHECK(versionWith(sizeof fixed - 1).empty());
    fixed.dwSignature = VS_FFI_SIGNATURE + 1;
    CHECK(versionWith(sizeof fixed).empty());
}

TEST_CASE_FIXTURE(Versions, "blocks that are cut short or overlong do no harm") {
    std::string whole = block(english, {{L"040904b0", {{name, L"Editor"}}}});
    for (size_t size = 0; size < whole.size(); size += 7) {
        give(whole.substr(0, size) + std::string(8, '\0'));
        string(name);
    }
    for (size_t at = 0; at + 1 < whole.size(); at += 5) {
        std::string hostile = whole;
        hostile[at] = hostile[at + 1] = '\xff';
        give(hostile);
        string(name);
    }
}

TEST_CASE_FIXTURE(Versions, "the object answers as a keyed list does") {
    give(block(english, {{L"040904b0", {{name, L"Editor"}}}}));
    win32::ComPtr<IVersionInfo> info;
    REQUIRE(make<helmkit::server::SystemServices>()->GetFileVersionInfo(bs(path).get(), info.out()) == S_OK);
    VARIANT_BOOL present = VARIANT_FALSE;
    REQUIRE(info->Exists(bs(name).get(), &present) == S_OK);
    CHECK(present == VARIANT_TRUE);
    REQUIRE(info->Exists(bs(L"ProductName").get(), &present) == S_OK);
    CHECK(present == VARIANT_FALSE);
    CHECK(stringFrom([&](BSTR* text) { return info->get_Item(bs(name).get(), text); }) == L"Editor");
    CHECK(stringFrom([&](BSTR* text) { return info->QueryValue(bs(name).get(), text); }) == L"Editor");
    CHECK(stringFrom([&](BSTR* text) { return info->QueryValue(bs(L"ProductName").get(), text); }) == L"");
    REQUIRE(make<helmkit::server::SystemServices>()->GetFileVersionInfo(nullptr, info.out()) == S_OK);
    CHECK(stringFrom([&](BSTR* text) { return info->get_Item(bs(name).get(), text); }) == L"");
}
