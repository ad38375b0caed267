// Registry files of both Windows families, byte by byte.
#include "files/registry_file.h"

#include <doctest/doctest.h>

#include "tests/support/helmkit_classes.h"
#include "tests/support/scripted_desktop.h"
#include "tests/support/temp_folder.h"
#include "tests/support/text.h"
#include "win32/base/text.h"
#include "win32/base/utf16_bytes.h"

namespace {

using Omissions = std::vector<std::wstring>;

struct RegistryFile : TempFolder {
    HelmkitClasses classes;
    ScriptedDesktop desktop;

    Omissions writeTexts(const std::vector<std::wstring>& texts) {
        files::ExportTexts given;
        for (const std::wstring& text : texts) given.emplace_back(text);
        return files::writeRegistryFile(file(L"a.reg"), std::move(given));
    }
    std::string bytes() const { return read(file(L"a.reg")); }
};

}  // namespace

TEST_CASE_FIXTURE(RegistryFile,
                  "the NT family's file is UTF-16 with its mark and header, other Windows' is ANSI") {
    const std::wstring one = L"\r\n[a\xE9]\r\n", other = L"\"\u20AC\"=\"\u0416\"\r\n";
    CHECK(writeTexts({one, other, L""}).empty());
    CHECK(bytes() == "\xFF\xFE" + win32::bytesOf(L"Windows Registry Editor Version 5.00\r\n" + one + other));
    CHECK(writeTexts({}).empty());
    CHECK(bytes() == "\xFF\xFE" + win32::bytesOf(L"Windows Registry Editor Version 5.00\r\n"));
    desktop.windowsVersion = ScriptedDesktop::windows98;
    CHECK(writeTexts({one, other}).empty());
    CHECK(bytes() == "REGEDIT4\r\n" + win32::toAnsi(one + other));
    CHECK(count() == 1);
}

TEST_CASE_FIXTURE(RegistryFile, "what an export could not hold is told, and nothing that merely looks so") {
    const std::wstring comment = L"; not exported: ";
    CHECK(writeTexts({comment + L"[first]\r\n\"a\"=\"b\"\r\n" + comment + L"[k] \"name\"\r\n",
                      L"\"" + comment + L"\"=\"x\"\r\n" + comment + L"[last]\r\n", L"nothing\r\n",
                      comment + comment + L"\r\n"}) ==
          Omissions{L"not exported: [first]", L"not exported: [k] \"name\"", L"not exported: [last]",
                    L"not exported: " + comment});
    CHECK_THROWS_AS(static_cast<void>(files::writeRegistryFile(file(L"no\\folder.reg"), {})), win32::Error);
}
