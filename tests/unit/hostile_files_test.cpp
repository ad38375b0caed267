// Entries whose files are no programs, cannot be read, or are no files at all.
#include <doctest/doctest.h>

#include "files/file_checksum.h"
#include "startup/ucRun.h"
#include "startup/ucServices.h"
#include "startup/ucWinlogon.h"
#include "tests/support/hostile_ground.h"
#include "tests/support/open_handles.h"
#include "win32/base/flavour.h"

namespace {

using namespace std::string_literals;

const HKEY machine = HKEY_LOCAL_MACHINE;
const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const std::wstring notify = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify";
const std::wstring services = L"SYSTEM\\CurrentControlSet\\Services";

// A DOS header whose new header stands at an offset.
std::string dosHeader(unsigned newHeader) {
    std::string header(64, '\0');
    header.replace(0, 2, "MZ");
    for (int i = 0; i < 4; ++i) header[60 + i] = static_cast<char>(newHeader >> 8 * i);
    return header;
}

// A 16-bit program whose resource table is these bytes, at the place that its header names.
std::string program16(const std::string& resources) {
    std::string header(64, '\0');
    header.replace(0, 2, "NE");
    header[0x24] = 64;  // the resource table, from the header on
    header[0x26] = static_cast<char>(64 + resources.size());
    header[0x36] = 2;  // for Windows
    return dosHeader(64) + header + resources + std::string(200, '\0');
}

// A resource of the type 16, a version, that stands at a place in the file, in units of 1 << shift bytes.
std::string versionResource(char shift, unsigned offset, unsigned length) {
    const auto word = [](unsigned n) { return std::string{static_cast<char>(n), static_cast<char>(n >> 8)}; };
    return word(shift) + word(0x8010) + word(1) + std::string(4, '\0') + word(offset) + word(length) +
           word(0) + word(0x8001) + std::string(4, '\0') + word(0);
}

struct Contents {
    const char* what;
    std::string bytes;
};

// Wine itself reads past the end of a 16-bit program's table of resources that has none, or counts more
// than it holds: that is not tried.
const Contents contents[] = {
    {"empty", ""},
    {"one byte", "M"},
    {"two letters", "MZ"},
    {"a DOS program", dosHeader(0) + std::string(100, '\x90')},
    {"a header behind the end", dosHeader(0x7FFFFFFF)},
    {"a header before the beginning", dosHeader(0xFFFFFFF0)},
    {"a header in the header", dosHeader(2)},
    {"a 16-bit program", program16(std::string(8, '\0'))},
    {"a 16-bit program without resources", program16("")},
    {"a 16-bit program, its version behind the end", program16(versionResource(4, 0xFFFF, 0xFFFF))},
    {"a 16-bit program, its version of nothing", program16(versionResource(0, 0, 0))},
    {"a 16-bit program, its version its header", program16(versionResource(0, 64, 200))},
    {"a 32-bit header alone", dosHeader(64) + "PE\0\0"s},
    {"a linear program", dosHeader(64) + "LE" + std::string(300, '\xFF')},
    {"a 32-bit program of noughts", dosHeader(64) + "PE\0\0\x4C\x01\xFF\xFF"s + std::string(4000, '\0')},
    {"a 32-bit program of ones", dosHeader(64) + "PE\0\0\x4C\x01"s + std::string(4000, '\xFF')},
    {"text", "echo off\r\n"},
    {"text of 1 MiB", std::string(1 << 20, 'x')},
};

struct Files : HostileGround {
    startup::ucRun general;
    startup::ucWinlogon winlogon;
    startup::ucServices allServices;

    Files() {
        registry.setString(machine, run, L"a", harmless);
        registry.setString(machine, notify + L"\\a", L"DLLName", harmless);
        registry.setString(machine, services + L"\\a", L"ImagePath", harmless);
    }
    void entry(const std::wstring& file) {
        registry.setString(machine, run, L"x", file);
        registry.setString(machine, notify + L"\\x", L"DLLName", file);
        registry.setString(machine, services + L"\\x", L"ImagePath", file);
    }
    // The neighbour and the entry are listed by all three; the entry as a file without description.
    void checkListed(const std::wstring& command, const std::wstring& file) {
        entry(command);
        const DWORD start = ::GetTickCount();
        for (const startup::Category* category :
             {static_cast<startup::Category*>(&general), static_cast<startup::Category*>(&winlogon),
              static_cast<startup::Category*>(&allServices)}) {
            const auto items = listed(*category);
            REQUIRE(items.size() == 2);
            checkHarmless(*category, items[0]);
            CHECK(win32::sameIgnoringCase(items[1].file(), file));
            CHECK(items[1].manufacturer().empty());
        }
        CHECK(log.lines.empty());
        CHECK(::GetTickCount() - start < 5000);
    }
    void checkListed(const std::wstring& file) { checkListed(file, file); }
    void deleteEntry() {
        const auto items = listed(general);
        const DWORD start = ::GetTickCount();
        CHECK(general.deleteItem(items[1], items[1].name(), logger).succeeded);
        CHECK(::GetTickCount() - start < 5000);
        CHECK_FALSE(registry.hasValue(machine, run, L"x"));
    }
};

}  // namespace

TEST_CASE_FIXTURE(Files, "files of any contents are listed without description, and deleted from the list") {
    const std::wstring file = folder.file(L"hostile.exe");
    checkListed(folder.file(L"nothing.exe"));
    const int handles = openHandles();
    for (const Contents& row : contents) {
        CAPTURE(std::string(row.what));
        TempFolder::write(file, row.bytes);
        checkListed(file);
        int32_t size = 0;
        files::FileChecksum(file, size);
        CHECK(size == static_cast<int32_t>(row.bytes.size()));
        deleteEntry();
        CHECK(TempFolder::read(file) == row.bytes);
    }
    checkNothingLeaked(handles);
}

TEST_CASE_FIXTURE(Files,
                  "a file of more than 4 GiB is listed at once, and is told without size and checksum") {
    const std::wstring file = folder.file(L"large.exe");
    for (const char* begin : {"", "MZ"}) {
        win32::OwnedFile large(
            ::CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        DWORD written = 0;
        ::WriteFile(large.get(), begin, static_cast<DWORD>(strlen(begin)), &written, nullptr);
        LONG high = 1;
        ::SetFilePointer(large.get(), 4096, &high, FILE_BEGIN);
        REQUIRE(::SetEndOfFile(large.get()));
        large.reset();
        checkListed(file);
        int32_t size = -1;
        CHECK(files::FileChecksum(file, size) == 0);
        CHECK(size == 0);
        deleteEntry();
    }
}

TEST_CASE_FIXTURE(Files, "a file that somebody has locked, hidden or is deleting is listed all the same") {
    const std::wstring file = program(folder.file(L"locked.exe"), {{L"FileDescription", L"Locked"}});
    {
        win32::OwnedFile lock(
            ::CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        REQUIRE(lock);
        checkListed(file);
        deleteEntry();
    }
    TempFolder::write(file, "MZ");
    ::SetFileAttributesW(file.c_str(),
                         FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_READONLY);
    checkListed(file);
    ::SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
    win32::OwnedFile going(::CreateFileW(file.c_str(), GENERIC_READ | DELETE,
                                         FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                         FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    REQUIRE(going);
    checkListed(file);
    going.reset();
    deleteEntry();
}

// Who reads from a pipe waits for what never comes.
TEST_CASE_FIXTURE(Files, "a pipe that somebody listens at is listed at once") {
    const std::wstring name = L"\\\\.\\pipe\\quillon" + std::to_wstring(::GetCurrentProcessId()) + L".exe";
    win32::OwnedFile pipe(::CreateNamedPipeW(name.c_str(), PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE | PIPE_WAIT,
                                             PIPE_UNLIMITED_INSTANCES, 512, 512, 0, nullptr));
    REQUIRE(pipe);
    checkListed(name);
    deleteEntry();
}

TEST_CASE_FIXTURE(Files, "folders, devices and streams are listed by their names") {
    const std::wstring directory = folder.file(L"directory.exe");
    REQUIRE(::CreateDirectoryW(directory.c_str(), nullptr));
    TempFolder::write(folder.file(L"host.txt"), "x");
    for (const std::wstring& file :
         {directory, folder.file(L"host.txt:stream.exe"), folder.file(L"host.txt\\below.exe"),
          std::wstring(L"\\\\.\\pipe\\quillon-nowhere.exe"), std::wstring(L"\\\\.\\QuillonNowhere.exe"),
          std::wstring(L"\\\\?\\GLOBALROOT\\Device\\QuillonNowhere.exe"),
          std::wstring(L"\\\\.\\mailslot\\quillon.exe"), std::wstring(L"Q:\\nowhere.exe"),
          std::wstring(L"\\\\127.0.0.1\\nowhere\\x.exe")}) {
        CAPTURE(file);
        checkListed(file);
        deleteEntry();
    }
}
