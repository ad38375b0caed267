// What is told of a file beside its name: its SHA-256 and its version.
#include <doctest/doctest.h>

#include "tests/support/replaced_import.h"
#include "tests/support/temp_folder.h"
#include "tests/support/text.h"
#include "tests/support/versioned_file.h"
#include "win32/files/file_version.h"
#include "win32/files/sha256.h"
#include "win32/system/system.h"

namespace {

const std::wstring ofNothing = L"e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
const std::wstring ofAbc = L"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
const std::wstring ofManyAs = L"63525fee49beaab98ee2a8edef9f9e7e378c0100a979ce363a9479dd2a98f9f3";
const size_t many = 3 * 65536 + 17;

UINT driveType = DRIVE_FIXED;
template <class Char>
UINT WINAPI getDriveType(const Char*) {
    return driveType;
}

int readsLeft = 0;
BOOL(WINAPI* realRead)(HANDLE, void*, DWORD, DWORD*, OVERLAPPED*);
BOOL WINAPI readFile(HANDLE file, void* bytes, DWORD count, DWORD* read, OVERLAPPED* overlapped) {
    return readsLeft-- > 0 && realRead(file, bytes, count, read, overlapped);
}

}  // namespace

TEST_CASE_FIXTURE(TempFolder, "the SHA-256 of a file, of any size") {
    for (const auto& [text, digits] : {std::pair(std::string(), ofNothing),
                                       {std::string("abc"), ofAbc},
                                       {std::string(many, 'a'), ofManyAs}}) {
        write(file(L"f"), text);
        CHECK(win32::sha256OfFile(file(L"f")) == digits);
    }
}

TEST_CASE_FIXTURE(TempFolder, "what cannot be read whole, or is no file, has none") {
    write(file(L"f"), std::string(many, 'a'));
    CHECK(win32::sha256OfFile(file(L"none")).empty());
    CHECK(win32::sha256OfFile(path()).empty());
    CHECK(win32::sha256OfFile(L"").empty());
    CHECK(win32::sha256OfFile(file(L"f") + std::wstring(L"\0x", 2)).empty());
    const ReplacedImport failing("ReadFile", &readFile, realRead);
    readsLeft = 2;
    CHECK(win32::sha256OfFile(file(L"f")).empty());
    readsLeft = 100;
    CHECK(win32::sha256OfFile(file(L"f")) == ofManyAs);
}

TEST_CASE_FIXTURE(TempFolder, "of a file on another machine nothing is read") {
    write(file(L"f"), "abc");
    const ReplacedImport wideCall("GetDriveTypeW", &getDriveType<wchar_t>);
    const ReplacedImport ansiCall("GetDriveTypeA", &getDriveType<char>);
    for (UINT type : {DRIVE_FIXED, DRIVE_RAMDISK, DRIVE_REMOVABLE, DRIVE_CDROM}) {
        driveType = type;
        CHECK(win32::sha256OfFile(file(L"f")) == ofAbc);
    }
    for (UINT type : {DRIVE_REMOTE, DRIVE_UNKNOWN, DRIVE_NO_ROOT_DIR}) {
        driveType = type;
        CHECK(win32::sha256OfFile(file(L"f")).empty());
    }
    driveType = DRIVE_FIXED;
    CHECK(win32::sha256OfFile(L"\\\\localhost\\c$\\windows\\win.ini").empty());
}

TEST_CASE_FIXTURE(TempFolder, "a file's version has four numbers, and a file without one has none") {
    makeProgramFile(file(L"a.exe"), {{L"CompanyName", L"x"}}, {5, 1, 2600, 65535});
    CHECK(win32::fileVersion(file(L"a.exe")) == L"5.1.2600.65535");
    makeProgramFile(file(L"b.exe"));
    CHECK(win32::fileVersion(file(L"b.exe")).empty());
    CHECK(win32::fileVersion(file(L"none.exe")).empty());
    CHECK(win32::fileVersion(L"").empty());
}
