#include <doctest/doctest.h>

#include "startup/ini_files.h"
#include "tests/support/helmkit_classes.h"
#include "tests/support/temp_folder.h"
#include "win32/base/error.h"
#include "win32/base/handle.h"

namespace {

// Nobody else can open it meanwhile.
win32::OwnedFile lockedFile(const std::wstring& path) {
    win32::OwnedFile file(::CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    REQUIRE(file);
    return file;
}

}  // namespace

TEST_CASE("a refresh reads an ini file once, the next one reads it anew") {
    HelmkitClasses classes;
    TempFolder folder;
    const std::wstring file = folder.file(L"win.ini");
    startup::IniFiles refresh;
    CHECK(refresh.startupLinesOf(folder.file(L"missing.ini")).empty());
    TempFolder::write(file, "[windows]\r\nload=first.exe\r\n");
    REQUIRE(refresh.startupLinesOf(file).size() == 1);
    TempFolder::write(file, "[windows]\r\nrun=second.exe\r\nload=third.exe\r\n");
    {
        const win32::OwnedFile alone = lockedFile(file);
        REQUIRE(refresh.startupLinesOf(file).size() == 1);
        CHECK(refresh.startupLinesOf(file)[0].rest == L"first.exe");
    }
    startup::IniFiles next;
    REQUIRE(next.startupLinesOf(file).size() == 2);
    CHECK(next.startupLinesOf(file)[0].key == L"run=");
    CHECK(next.startupLinesOf(file)[1].rest == L"third.exe");
}

TEST_CASE("an ini file that cannot be read is told every time") {
    HelmkitClasses classes;
    TempFolder folder;
    const std::wstring file = folder.file(L"win.ini");
    TempFolder::write(file, "load=a\r\n");
    const win32::OwnedFile alone = lockedFile(file);
    startup::IniFiles refresh;
    for (int i = 0; i < 2; ++i) CHECK_THROWS_AS(refresh.startupLinesOf(file), win32::Error);
}
