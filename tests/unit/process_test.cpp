#include <doctest/doctest.h>

#include "tests/support/temp_folder.h"
#include "tests/support/text.h"
#include "win32/base/error.h"
#include "win32/base/flavour.h"
#include "win32/files/files.h"
#include "win32/system/desktop.h"
#include "win32/system/process.h"
#include "win32/system/system.h"

namespace {

const UINT quiet = SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX;

// A junction, which needs no rights to be made. False where the file system has none.
bool makeJunction(const std::wstring& path, const std::wstring& target) {
    if (!::CreateDirectoryW(path.c_str(), nullptr)) return false;
    win32::OwnedFile folder(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                          FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT,
                                          nullptr));
    const std::wstring native = L"\\??\\" + target;
    const WORD size = static_cast<WORD>(native.size() * 2);
    struct {
        DWORD tag;
        WORD length, reserved, nameOffset, nameLength, printOffset, printLength;
        wchar_t names[600];
    } data = {0xA0000003, static_cast<WORD>(size + 12), 0, 0, size, static_cast<WORD>(size + 2), 0, {}};
    native.copy(data.names, native.size());
    DWORD ignored = 0;
    const DWORD setReparsePoint = 0x000900A4;
    return folder && ::DeviceIoControl(folder.get(), setReparsePoint, &data, data.length + 8, nullptr, 0,
                                       &ignored, nullptr);
}

}  // namespace

TEST_CASE("looking at an empty drive asks nobody for a disk") {
    const UINT before = ::SetErrorMode(SEM_NOGPFAULTERRORBOX);
    win32::failWithoutBoxes();
    CHECK(::SetErrorMode(before) == (quiet | SEM_NOGPFAULTERRORBOX));
}

TEST_CASE("libraries are still found in the system folder only") {
    win32::useSystemLibrariesOnly();
    CHECK(win32::systemAddress(L"version.dll", "VerQueryValueA") != nullptr);
    const std::wstring own = win32::moduleFolder(nullptr) + L"\\quillon_planted.dll";
    REQUIRE(::CopyFileW((win32::systemFolder() + L"\\version.dll").c_str(), own.c_str(), FALSE));
    HMODULE planted = ::LoadLibraryA("quillon_planted.dll");
    // Windows 98 has no way to leave out the program's own folder.
    CHECK((planted == nullptr) == (win32::flavour() == win32::Flavour::wide));
    if (planted) ::FreeLibrary(planted);
    ::DeleteFileW(own.c_str());
}

TEST_CASE("a folder that is a link is refused where that is asked for") {
    if (win32::flavour() == win32::Flavour::ansi) return;  // Windows 9x has none
    TempFolder folder;
    const std::wstring target = folder.file(L"target"), link = folder.file(L"Backup");
    REQUIRE(::CreateDirectoryW(target.c_str(), nullptr));
    CHECK_NOTHROW(win32::createFolder(target, win32::Links::refused));
    if (!makeJunction(link, target) || !(win32::attributesOf(link) & FILE_ATTRIBUTE_REPARSE_POINT)) {
        MESSAGE("no links can be made here");
        return;
    }
    CHECK_NOTHROW(win32::createFolder(link));
    CHECK_THROWS_AS(win32::createFolder(link, win32::Links::refused), win32::Error);
    CHECK_THROWS_AS(win32::AppendFile(link, win32::Links::refused), win32::Error);
    ::RemoveDirectoryW(link.c_str());
}

TEST_CASE("a file is appended to, links refused or not") {
    TempFolder folder;
    const std::wstring path = folder.file(L"QLN.log");
    for (win32::Links links : {win32::Links::refused, win32::Links::followed})
        win32::AppendFile(path, links).write("line\r\n");
    CHECK(TempFolder::read(path) == "line\r\nline\r\n");
}
