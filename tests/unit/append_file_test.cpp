// Several that append to one file at once.
#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "tests/support/raised.h"
#include "tests/support/replaced_import.h"
#include "tests/support/temp_folder.h"
#include "win32/base/flavour.h"
#include "win32/files/files.h"

namespace {

const int lines = 500;
const std::string line = "what one writes at once stays together\r\n";

DWORD WINAPI appendLines(void* path) {
    win32::AppendFile file(*static_cast<const std::wstring*>(path));
    for (int count = 0; count < lines; ++count) file.write(line);
    return 0;
}

DWORD answer = WAIT_OBJECT_0;
int waits = 0, ends = 0;

DWORD WINAPI wait(HANDLE, DWORD milliseconds) {
    CHECK(milliseconds == 1000);
    ++waits;
    return answer;
}
BOOL WINAPI endOfTurn(HANDLE) {
    ++ends;
    return TRUE;
}

// What the file that was opened turns out to be.
BOOL isTold = TRUE;
DWORD toldAttributes = 0;
BOOL WINAPI tellOfFile(HANDLE, BY_HANDLE_FILE_INFORMATION* found) {
    *found = {};
    found->dwFileAttributes = toldAttributes;
    return isTold;
}

struct Turns : TempFolder {
    const ReplacedImport wait{"WaitForSingleObject", &::wait}, end{"ReleaseMutex", &endOfTurn};
    const bool isAnsi = win32::flavour() == win32::Flavour::ansi;

    Turns() { waits = ends = 0; }
};

}  // namespace

TEST_CASE_FIXTURE(TempFolder, "of several that append at once none writes over another's line") {
    // Where the right to append alone is there, the system sees to it. Wine does so in two steps.
    if (win32::flavour() == win32::Flavour::wide) return;
    std::wstring path = file(L"log");
    std::vector<win32::OwnedObject> writers;
    DWORD id = 0;
    for (int count = 0; count < 4; ++count) {
        writers.emplace_back(::CreateThread(nullptr, 0, appendLines, &path, 0, &id));
    }
    for (const win32::OwnedObject& writer : writers) {
        REQUIRE(::WaitForSingleObject(writer.get(), 60000) == WAIT_OBJECT_0);
    }
    std::string whole;
    for (size_t count = 0; count < writers.size() * lines; ++count) whole += line;
    const bool isWhole = read(path) == whole;
    CHECK(isWhole);
}

TEST_CASE_FIXTURE(Turns, "each write is a turn of its own, which ends") {
    for (DWORD given : {WAIT_OBJECT_0, WAIT_ABANDONED}) {
        waits = ends = 0;
        answer = given;
        win32::AppendFile log(file(L"log"));
        CHECK(waits == 0);
        log.write("one ");
        log.write("two ");
        CHECK(waits == (isAnsi ? 2 : 0));
        CHECK(ends == waits);
    }
    CHECK(read(file(L"log")) == "one two one two ");
}

TEST_CASE_FIXTURE(Turns, "for a turn that does not come it is waited once") {
    for (DWORD given : {DWORD{WAIT_TIMEOUT}, WAIT_FAILED}) {
        waits = 0;
        answer = given;
        win32::AppendFile log(file(L"log"));
        log.write("one ");
        log.write("two ");
        CHECK(waits == (isAnsi ? 1 : 0));
    }
    CHECK(ends == 0);
    CHECK(read(file(L"log")) == "one two one two ");
}

TEST_CASE_FIXTURE(TempFolder, "a link is not followed where that is asked for, nor what is told nothing of") {
    const ReplacedImport call("GetFileInformationByHandle", &tellOfFile);
    const bool isWide = win32::flavour() == win32::Flavour::wide;
    const std::wstring path = file(L"log");
    const struct {
        BOOL isTold;
        DWORD attributes;
        bool isRefused;
    } rows[] = {{TRUE, FILE_ATTRIBUTE_NORMAL, false},
                {TRUE, FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_REPARSE_POINT, true},
                {FALSE, 0, true}};
    for (const auto& row : rows) {
        isTold = row.isTold;
        toldAttributes = row.attributes;
        CHECK(win32::AppendFile(path));
        if (row.isRefused && isWide) {
            CHECK(raises(ERROR_ACCESS_DENIED, path, [&] { win32::AppendFile(path, win32::Links::refused); }));
        } else {
            CHECK(win32::AppendFile(path, win32::Links::refused));
        }
    }
}
