#include "helmkit/log_writer.h"

#include <string>
#include <vector>

#include <doctest/doctest.h>

#include "tests/support/objects.h"
#include "tests/support/replaced_import.h"
#include "tests/support/scripted_desktop.h"
#include "tests/support/short_read.h"
#include "tests/support/temp_folder.h"

namespace {

struct Logs {
    TempFolder folder;
    ScriptedDesktop desktop;
    win32::ComPtr<helmkit::server::LogWriter> writer = make<helmkit::server::LogWriter>();
    std::wstring full = folder.file(L"QLN.log");
    std::wstring brief = folder.file(L"short.log");

    HRESULT open() { return writer->OpenLogs(bs(full).get(), bs(brief).get()); }
    HRESULT write(LONG code, const std::wstring& text, LONG level, const std::wstring& source) {
        return writer->WriteLog(code, bs(text).get(), level, bs(source).get());
    }
};

// Writes that fail: each with the next code of these, 0 for one that succeeds.
std::vector<DWORD> writeErrors;
BOOL(WINAPI* realWrite)(HANDLE, const void*, DWORD, DWORD*, OVERLAPPED*);
BOOL WINAPI writeFile(HANDLE file, const void* bytes, DWORD count, DWORD* written, OVERLAPPED* overlapped) {
    const DWORD error = writeErrors.empty() ? 0 : writeErrors.front();
    if (!writeErrors.empty()) writeErrors.erase(writeErrors.begin());
    if (!error) return realWrite(file, bytes, count, written, overlapped);
    ::SetLastError(error);
    return FALSE;
}

void append(const std::wstring& path, const std::string& bytes) {
    const win32::OwnedFile file(::CreateFileW(path.c_str(), FILE_APPEND_DATA,
                                              FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                              nullptr));
    DWORD written = 0;
    REQUIRE(::WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
}

// Lines of 64 bytes, numbered.
std::string numberedLines(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        std::string line = "line " + std::to_string(i);
        text += line + std::string(62 - line.size(), '.') + "\r\n";
    }
    return text;
}

}  // namespace

TEST_CASE_FIXTURE(Logs, "a line holds time, level, source, code and text") {
    REQUIRE(open() == S_OK);
    CHECK(write(0, L"********** start app", 5, L"FMain.Form_Initialize") == S_OK);
    CHECK(TempFolder::read(full) ==
          "2026-11-20T23:35:47.123\t5\tFMain.Form_Initialize\t0\t********** start app\r\n");
}

TEST_CASE_FIXTURE(Logs, "errors go to both logs, information to the full one") {
    REQUIRE(open() == S_OK);
    for (LONG level : {0L, 4L, 5L, 6L}) CHECK(write(-1, std::to_wstring(level), level, L"") == S_OK);
    CHECK(TempFolder::read(brief) ==
          "2026-11-20T23:35:47.123\t0\t\t-1\t0\r\n2026-11-20T23:35:47.123\t4\t\t-1\t4\r\n");
    CHECK(TempFolder::read(full).find("\t6\t\t-1\t6\r\n") != std::string::npos);
    CHECK(TempFolder::read(full).find("\t5\t\t-1\t5\r\n") != std::string::npos);
}

TEST_CASE_FIXTURE(Logs, "an entry stays one line, in UTF-8") {
    REQUIRE(open() == S_OK);
    CHECK(write(0, L"C:\\a\r\nb\t\u0416", 5, L"") == S_OK);
    CHECK(TempFolder::read(full) ==
          "2026-11-20T23:35:47.123\t5\t\t0\tC:\\a\xE2\x90\x8D\xE2\x90\x8A"
          "b\xE2\x90\x89\xD0\x96\r\n");
}

TEST_CASE_FIXTURE(Logs, "runs are appended, and each line is in the file at once") {
    TempFolder::write(full, "an earlier run\r\n");
    REQUIRE(open() == S_OK);
    CHECK(write(0, L"a", 5, L"") == S_OK);
    CHECK(TempFolder::read(full) == "an earlier run\r\n2026-11-20T23:35:47.123\t5\t\t0\ta\r\n");
    auto second = make<helmkit::server::LogWriter>();
    REQUIRE(second->OpenLogs(bs(full).get(), bs(brief).get()) == S_OK);
    CHECK(second->WriteLog(0, bs(L"b").get(), 5, nullptr) == S_OK);
    CHECK(write(0, L"c", 5, L"") == S_OK);
    CHECK(TempFolder::read(full).substr(16) ==
          "2026-11-20T23:35:47.123\t5\t\t0\ta\r\n2026-11-20T23:35:47.123\t5\t\t0\tb\r\n"
          "2026-11-20T23:35:47.123\t5\t\t0\tc\r\n");
}

TEST_CASE_FIXTURE(Logs, "the clock is asked once for each of Windows' ticks") {
    REQUIRE(open() == S_OK);
    CHECK(write(0, L"a", 5, L"") == S_OK);
    desktop.time.wMilliseconds = 200;
    CHECK(write(0, L"b", 5, L"") == S_OK);
    ++desktop.ticks;
    CHECK(write(0, L"c", 5, L"") == S_OK);
    CHECK(TempFolder::read(full) ==
          "2026-11-20T23:35:47.123\t5\t\t0\ta\r\n2026-11-20T23:35:47.123\t5\t\t0\tb\r\n"
          "2026-11-20T23:35:47.200\t5\t\t0\tc\r\n");
}

TEST_CASE_FIXTURE(Logs, "after a failed opening lines are dropped and nothing is raised") {
    brief = folder.file(L"no\\such\\short.log");
    CHECK(open() == HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND));
    CHECK(write(0, L"a", 4, L"") == S_OK);
    CHECK(TempFolder::read(full) == "");
    CHECK(make<helmkit::server::LogWriter>()->WriteLog(0, nullptr, 0, nullptr) == S_OK);
}

TEST_CASE_FIXTURE(Logs, "a failed opening also ends the logs that were open") {
    REQUIRE(open() == S_OK);
    CHECK(FAILED(writer->OpenLogs(bs(folder.path()).get(), bs(brief).get())));
    CHECK(write(0, L"a", 4, L"") == S_OK);
    CHECK(TempFolder::read(full) == "");
}

TEST_CASE_FIXTURE(Logs, "after a failed opening neither log is held any more") {
    REQUIRE(open() == S_OK);
    CHECK(FAILED(writer->OpenLogs(bs(folder.path()).get(), bs(brief).get())));
    CHECK(::DeleteFileW(full.c_str()));
    CHECK(::DeleteFileW(brief.c_str()));
    REQUIRE(open() == S_OK);
    CHECK(FAILED(writer->OpenLogs(bs(full).get(), bs(folder.path()).get())));
    CHECK(::DeleteFileW(full.c_str()));
    CHECK(::DeleteFileW(brief.c_str()));
}

TEST_CASE_FIXTURE(
    Logs, "a line that one log does not take is still written to the other, and the first failure told") {
    REQUIRE(open() == S_OK);
    const ReplacedImport failing("WriteFile", &writeFile, realWrite);
    const std::string line = "2026-11-20T23:35:47.123\t4\t\t0\ta\r\n";
    writeErrors = {ERROR_DISK_FULL, 0};
    CHECK(write(0, L"a", 4, L"") == HRESULT_FROM_WIN32(ERROR_DISK_FULL));
    CHECK(TempFolder::read(full) == "");
    CHECK(TempFolder::read(brief) == line);
    writeErrors = {0, ERROR_ACCESS_DENIED};
    CHECK(write(0, L"a", 4, L"") == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    CHECK(TempFolder::read(full) == line);
    writeErrors = {ERROR_DISK_FULL, ERROR_ACCESS_DENIED};
    CHECK(write(0, L"a", 4, L"") == HRESULT_FROM_WIN32(ERROR_DISK_FULL));
    writeErrors.clear();
    CHECK(write(0, L"a", 4, L"") == S_OK);
    CHECK(TempFolder::read(full) == line + line);
    CHECK(TempFolder::read(brief) == line + line);
}

TEST_CASE_FIXTURE(Logs, "the short log is cut at a limit of its own, also by a writer that has it open") {
    const int lines = (1 << 20) / 64;
    REQUIRE(open() == S_OK);
    for (const std::wstring& path : {full, brief}) append(path, numberedLines(lines + 1));
    REQUIRE(open() == S_OK);
    const std::string cut = TempFolder::read(brief);
    CHECK(cut.size() <= (1 << 19));
    CHECK(cut.size() > (1 << 19) - 128);
    CHECK(cut.find("line " + std::to_string(lines) + ".") == cut.size() - 64);
    CHECK(TempFolder::read(full).size() == (1 << 20) + 64);
}

TEST_CASE_FIXTURE(Logs, "of a log that gets shorter while it is cut the lines that were read stay") {
    TempFolder::write(brief, numberedLines((1 << 20) / 64 + 1));
    {
        const ShortRead shortened(128);
        REQUIRE(open() == S_OK);
    }
    CHECK(TempFolder::read(brief).size() == 64);
    CHECK(TempFolder::read(brief).substr(0, 5) == "line ");
}

TEST_CASE_FIXTURE(Logs, "a log over its limit is cut to its newest whole lines when it is opened") {
    const int fullLines = (4 << 20) / 64, briefLines = (1 << 20) / 64;
    TempFolder::write(full, numberedLines(fullLines + 1));
    TempFolder::write(brief, numberedLines(briefLines));
    REQUIRE(open() == S_OK);
    std::string cut = TempFolder::read(full);
    CHECK(cut.size() <= (2 << 20));
    CHECK(cut.size() > (2 << 20) - 128);
    CHECK(cut.substr(0, 5) == "line ");
    CHECK(cut.find("line " + std::to_string(fullLines) + ".") == cut.size() - 64);
    CHECK(TempFolder::read(brief).size() == 1 << 20);
    CHECK(folder.count() == 2);
}

TEST_CASE_FIXTURE(Logs, "a log that another run has open is not cut") {
    TempFolder::write(full, numberedLines((4 << 20) / 64 + 1));
    auto other = make<helmkit::server::LogWriter>();
    win32::OwnedFile user(::CreateFileW(full.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                        nullptr, OPEN_EXISTING, 0, nullptr));
    REQUIRE(user);
    REQUIRE(open() == S_OK);
    CHECK(write(0, L"a", 5, L"") == S_OK);
    CHECK(TempFolder::read(full).size() > (4 << 20) + 64);
    CHECK(folder.count() == 2);
}
