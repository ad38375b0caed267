// Entries on drives and shares that do not answer.
#include <doctest/doctest.h>

#include <map>

#include "files/reach.h"
#include "startup/ucRun.h"
#include "tests/support/page_fixture.h"
#include "win32/base/platform.h"
#include "win32/files/roots.h"

namespace {

const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const std::wstring share = L"\\\\quillon-nowhere\\share\\";

std::map<std::wstring, int> asked;
std::map<std::wstring, DWORD> errors;

DWORD scriptedError(const std::wstring& root) {
    ++asked[root];
    return errors.count(root) ? errors[root] : ERROR_SUCCESS;
}

struct Unreachable : PageFixture {
    PageOf<startup::ucRun> page{parent.handle()};
    decltype(win32::errorOfRoot) before = std::exchange(win32::errorOfRoot, &scriptedError);
    // The files are there: whoever looks at them all the same sees them.
    const std::wstring drive = folder.path().substr(0, 3);

    Unreachable() {
        asked.clear();
        errors.clear();
    }
    ~Unreachable() { win32::errorOfRoot = before; }

    void entry(const std::wstring& name, const std::wstring& command) {
        registry.setString(HKEY_LOCAL_MACHINE, run, name, command);
    }
    void fill() {
        for (int i = 0; i < 20; ++i) {
            const std::wstring number = std::to_wstring(100 + i);
            const std::wstring file = folder.file(L"LongNamedProgram" + number + L".exe");
            entry(L"drive" + number, program(file, {{L"FileDescription", L"A description"}}));
            entry(L"share" + number, share + L"%x%\\program" + number + L".exe");
        }
    }
    int count(const std::wstring& text) {
        win32::ListView& list = page.ListViewObject();
        int rows = 0;
        for (int row = 0; row < list.count(); ++row)
            rows += list.text(row, 0).compare(0, text.size(), text) == 0;
        return rows;
    }
    void refresh() {
        helmkit::Logger logger = log.logger();
        page.Init(logger);
    }
};

}  // namespace

TEST_CASE_FIXTURE(Unreachable, "a root that does not answer is asked once in a refresh, its files never") {
    fill();
    errors = {{drive, ERROR_NOT_READY}, {share, ERROR_BAD_NETPATH}};
    refresh();
    CHECK(asked[drive] == 1);
    CHECK(asked[share] == 1);
    CHECK(count(L"drive") == 20);
    CHECK(count(L"share") == 20);
    CHECK(log.lines.empty());
    CHECK(page.itemOf(0).file() == folder.file(L"LongNamedProgram100.exe"));
}

TEST_CASE_FIXTURE(Unreachable, "the next refresh asks again") {
    fill();
    errors = {{drive, ERROR_NOT_READY}, {share, ERROR_BAD_NETPATH}};
    refresh();
    errors.clear();
    page.RefreshList();
    CHECK(asked[drive] == 2);
    CHECK(asked[share] == 2);
    CHECK(count(L"A description") == 20);
}

TEST_CASE_FIXTURE(Unreachable, "other errors of a root say nothing of its files") {
    fill();
    for (DWORD error : {ERROR_ACCESS_DENIED, ERROR_PATH_NOT_FOUND, ERROR_FILE_NOT_FOUND}) {
        errors = {{drive, error}};
        refresh();
        CHECK(count(L"A description") == 20);
    }
}

TEST_CASE_FIXTURE(Unreachable, "for a path without a root none is asked") {
    errors = {{L"", ERROR_NOT_READY}, {drive, ERROR_NOT_READY}};
    files::Reach reach;
    for (const wchar_t* path : {L"", L"a.exe", L"\\a.exe", L"sub\\a.exe", L"C:a.exe"}) {
        CAPTURE(path);
        CHECK_FALSE(reach.isBeyond(path));
    }
    CHECK(asked.empty());
    CHECK(reach.isBeyond(drive + L"a.exe"));
    CHECK(asked[drive] == 1);
}
