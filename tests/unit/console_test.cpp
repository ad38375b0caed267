// The streams of a console program, and what it tells of where it runs.
#include <doctest/doctest.h>

#include <optional>
#include <vector>

#include "tests/support/replaced_import.h"
#include "tests/support/temp_folder.h"
#include "tests/support/text.h"
#include "win32/base/error.h"
#include "win32/base/handle.h"
#include "win32/system/console.h"
#include "win32/system/identity.h"
#include "win32/system/universal_time.h"

namespace {

// The standard streams led into files.
struct Streams : TempFolder {
    win32::OwnedFile output = opened(L"output"), errors = opened(L"errors");
    HANDLE outputBefore = ::GetStdHandle(STD_OUTPUT_HANDLE), errorsBefore = ::GetStdHandle(STD_ERROR_HANDLE);

    Streams() {
        ::SetStdHandle(STD_OUTPUT_HANDLE, output.get());
        ::SetStdHandle(STD_ERROR_HANDLE, errors.get());
    }
    ~Streams() {
        ::SetStdHandle(STD_OUTPUT_HANDLE, outputBefore);
        ::SetStdHandle(STD_ERROR_HANDLE, errorsBefore);
    }
    win32::OwnedFile opened(const wchar_t* name) const {
        return win32::OwnedFile(::CreateFileW(file(name).c_str(), GENERIC_WRITE,
                                              FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, CREATE_ALWAYS, 0,
                                              nullptr));
    }
};

// A console that takes a few bytes at once, or nothing.
DWORD takes = 0;
DWORD largest = 0;
std::string taken;

DWORD WINAPI fileType(HANDLE) {
    return FILE_TYPE_CHAR;
}
BOOL WINAPI consoleMode(HANDLE, DWORD* mode) {
    *mode = 0;
    return TRUE;
}
UINT WINAPI codePage() {
    return 437;
}
BOOL WINAPI writeFile(HANDLE, const void* bytes, DWORD count, DWORD* written, OVERLAPPED*) {
    largest = count > largest ? count : largest;
    *written = count < takes ? count : takes;
    taken.append(static_cast<const char*>(bytes), *written);
    return TRUE;
}
BOOL WINAPI refuse(HANDLE, const void*, DWORD, DWORD*, OVERLAPPED*) {
    ::SetLastError(ERROR_BROKEN_PIPE);
    return FALSE;
}

BOOL(WINAPI* handler)(DWORD) = nullptr;
BOOL isSet = FALSE;
BOOL WINAPI setHandler(BOOL(WINAPI* given)(DWORD), BOOL adds) {
    handler = given;
    isSet = adds;
    return TRUE;
}

// The writing ends while it is waited for.
std::optional<win32::NoInterruption> lasting;
std::vector<DWORD> waits;
void WINAPI sleepOnce(DWORD milliseconds) {
    waits.push_back(milliseconds);
    if (waits.size() == 3) lasting.reset();
}

HANDLE asked = nullptr;
DWORD fileKind = FILE_TYPE_CHAR;
DWORD WINAPI kindOf(HANDLE stream) {
    asked = stream;
    return fileKind;
}
BOOL hasMode = TRUE;
BOOL WINAPI modeOf(HANDLE stream, DWORD*) {
    return hasMode && stream == asked;
}

template <class Call>
long numberOf(Call call) {
    try {
        call();
    } catch (const win32::Error& error) {
        return error.number;
    }
    return 0;
}

using win32::Stream;

}  // namespace

TEST_CASE_FIXTURE(Streams, "each stream gets its own text, as UTF-8 where no console is") {
    CHECK_FALSE(win32::isConsole(Stream::output));
    win32::writeText(Stream::output, L"\u00E9\u0416\r\n");
    win32::writeText(Stream::error, L"wrong");
    win32::writeText(Stream::output, L"");
    const std::string bytes(20001, 'x');
    win32::writeBytes(Stream::output, bytes);
    CHECK(read(file(L"output")) == "\xC3\xA9\xD0\x96\r\n" + bytes);
    CHECK(read(file(L"errors")) == "wrong");
}

TEST_CASE("a console gets its own code page, a piece at a time") {
    const ReplacedImport type("GetFileType", &fileType), mode("GetConsoleMode", &consoleMode),
        page("GetConsoleOutputCP", &codePage), write("WriteFile", &writeFile);
    takes = 3000;
    largest = 0;
    taken.clear();
    CHECK(win32::isConsole(Stream::output));
    win32::writeText(Stream::output, L"\u00E9" + std::wstring(20000, L'x') + L"\u00E4");
    CHECK(taken == "\x82" + std::string(20000, 'x') + "\x84");
    CHECK(largest == 8192);
    taken.clear();
    win32::writeText(Stream::output, L"");
    CHECK(taken.empty());
}

TEST_CASE("a stream that takes no more is an error") {
    {
        const ReplacedImport write("WriteFile", &writeFile);
        takes = 0;
        CHECK(numberOf([] { win32::writeBytes(Stream::output, "x"); }) ==
              HRESULT_FROM_WIN32(ERROR_WRITE_FAULT));
        takes = 1;
        CHECK(numberOf([] { win32::writeBytes(Stream::output, "xyz"); }) == 0);
    }
    const ReplacedImport write("WriteFile", &refuse);
    CHECK(numberOf([] { win32::writeBytes(Stream::output, "x"); }) == HRESULT_FROM_WIN32(ERROR_BROKEN_PIPE));
}

TEST_CASE("a request to end waits while something is written, and is asked of the next one after that") {
    const ReplacedImport call("SetConsoleCtrlHandler", &setHandler);
    {
        const win32::NoInterruption writing;
        CHECK(isSet);
        const bool isGiven = handler != nullptr;
        REQUIRE(isGiven);
    }
    CHECK_FALSE(isSet);
    CHECK_FALSE(handler(CTRL_C_EVENT));
    const ReplacedImport sleep("Sleep", &sleepOnce);
    waits.clear();
    lasting.emplace();
    CHECK_FALSE(handler(CTRL_C_EVENT));
    CHECK((waits == std::vector<DWORD>{10, 10, 10}));
}

TEST_CASE("a stream is a console when it is a character device that has a mode") {
    const ReplacedImport kind("GetFileType", &kindOf), mode("GetConsoleMode", &modeOf);
    for (Stream stream : {Stream::output, Stream::error}) {
        fileKind = FILE_TYPE_CHAR;
        hasMode = TRUE;
        CHECK(win32::isConsole(stream));
        CHECK(asked == ::GetStdHandle(stream == Stream::output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE));
        hasMode = FALSE;
        CHECK_FALSE(win32::isConsole(stream));
        hasMode = TRUE;
        fileKind = FILE_TYPE_PIPE;
        CHECK_FALSE(win32::isConsole(stream));
    }
}

TEST_CASE("computer, user and command line are those of Windows") {
    wchar_t name[300];
    DWORD length = 300;
    REQUIRE(::GetComputerNameW(name, &length));
    CHECK(win32::computerName() == name);
    length = 300;
    REQUIRE(::GetUserNameW(name, &length));
    CHECK(win32::userName() == name);
    CHECK(win32::commandLine() == ::GetCommandLineW());
}

TEST_CASE("a local moment as universal time; what is no moment is none") {
    const SYSTEMTIME moment = {2026, 11, 5, 20, 23, 35, 47, 123};
    FILETIME local, expected;
    REQUIRE(::SystemTimeToFileTime(&moment, &local));
    REQUIRE(::LocalFileTimeToFileTime(&local, &expected));
    const FILETIME told = win32::universalTime(moment);
    CHECK(::CompareFileTime(&told, &expected) == 0);
    const FILETIME none = win32::universalTime({2026, 13, 0, 1, 0, 0, 0, 0});
    CHECK(none.dwLowDateTime == 0);
    CHECK(none.dwHighDateTime == 0);
}
