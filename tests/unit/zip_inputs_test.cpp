// Which files a list of specifications means, and under which names they are stored.
#include "support/zip_inputs.h"

#include <algorithm>

#include <doctest/doctest.h>

#include "tests/support/replaced_import.h"
#include "tests/support/temp_folder.h"
#include "tests/support/text.h"
#include "win32/base/error.h"
#include "win32/base/text.h"

namespace {

using Names = std::vector<std::wstring>;

// Marks what is named so as a link to another folder.
template <class Data, class Char>
struct Links {
    static inline BOOL(WINAPI* real)(HANDLE, Data*);
    static inline const Char* name;
    static BOOL WINAPI findNextFile(HANDLE search, Data* data) {
        const BOOL found = real(search, data);
        using Text = std::basic_string_view<Char>;
        if (found && Text(data->cFileName) == name) data->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
        return found;
    }
};

struct Inputs : TempFolder {
    support::ZipSearch search;

    Inputs() {
        for (const wchar_t* name : {L"one", L"one\\two", L"secret", L"system"})
            REQUIRE(::CreateDirectoryW(file(name).c_str(), nullptr));
        for (const wchar_t* name : {L"A.txt", L"b.dat", L"hid.txt", L"one\\c.txt", L"one\\two\\d.TXT",
                                    L"secret\\e.txt", L"system\\f.txt"})
            write(file(name), "text");
        hide(L"hid.txt", FILE_ATTRIBUTE_HIDDEN);
        hide(L"secret", FILE_ATTRIBUTE_HIDDEN);
        hide(L"system", FILE_ATTRIBUTE_SYSTEM);
        search.basePath = path();
        search.archive = file(L"none.zip");
    }
    void hide(const wchar_t* name, DWORD attributes) { ::SetFileAttributesW(file(name).c_str(), attributes); }

    // The stored names, sorted: the order within a folder is the file system's.
    Names names(const Names& specs) {
        Names found;
        for (const support::ZipInput& input : support::findInputs(specs, search)) {
            found.push_back(input.storedName);
            CHECK(::GetFileAttributesW(input.path.c_str()) == input.file.attributes);
        }
        std::sort(found.begin(), found.end());
        return found;
    }
    // The number and the path of what is thrown.
    std::pair<long, std::wstring> failure(const Names& specs) {
        try {
            support::findInputs(specs, search);
            return {};
        } catch (const win32::Error& error) {
            return {error.number, error.description};
        }
    }
    void checkFailure(const Names& specs, DWORD code, const std::wstring& path) {
        const auto [number, description] = failure(specs);
        CHECK(number == HRESULT_FROM_WIN32(code));
        CHECK(description.find(path) == 0);
    }
};

}  // namespace

TEST_CASE_FIXTURE(Inputs, "a wildcard means the files of its folder, in any letters") {
    CHECK(names({L"*"}) == Names{L"A.txt", L"b.dat"});
    CHECK(names({L"*.TXT"}) == Names{L"A.txt"});
    CHECK(names({L"one/*"}) == Names{L"c.txt"});
    CHECK(names({L"?.*", L"b.dat"}) == Names{L"A.txt", L"b.dat"});
    search.basePath.clear();
    CHECK(names({file(L"a.*")}) == Names{L"A.txt"});
}

TEST_CASE_FIXTURE(Inputs, "without a folder of its own a wildcard means the current one") {
    wchar_t before[MAX_PATH];
    ::GetCurrentDirectoryW(MAX_PATH, before);
    search.basePath.clear();
    REQUIRE(::SetCurrentDirectoryW(path().c_str()));
    const Names found = names({L"*.txt"});
    REQUIRE(::SetCurrentDirectoryW(before));
    CHECK(found == Names{L"A.txt"});
}

TEST_CASE_FIXTURE(Inputs, "recursion goes into folders, whose names are stored where that is asked for") {
    search.recurse = true;
    CHECK(names({L"*.txt"}) == Names{L"A.txt", L"c.txt", L"d.TXT"});
    CHECK(names({L"one"}) == Names{L"c.txt", L"d.TXT"});
    search.folderNames = true;
    CHECK(names({L"*.txt"}) == Names{L"A.txt", L"one/c.txt", L"one/two/d.TXT"});
    CHECK(names({L"one\\"}) == Names{L"one/c.txt", L"one/two/d.TXT"});
    search.directories = true;
    CHECK(names({L"*"}) == Names{L"A.txt", L"b.dat", L"one/", L"one/c.txt", L"one/two/", L"one/two/d.TXT"});
    CHECK(names({L"*.txt"}) == Names{L"A.txt", L"one/c.txt", L"one/two/d.TXT"});
    CHECK(names({L"one"}) == Names{L"one/", L"one/c.txt", L"one/two/", L"one/two/d.TXT"});
    CHECK(names({L"one\\two\\..\\\\"}) == Names{L"one/", L"one/c.txt", L"one/two/", L"one/two/d.TXT"});
    // The folder that all of it starts at has no name of its own.
    CHECK(names({L"."}).size() == 6);
    search.recurse = false;
    CHECK(names({L"*"}) == Names{L"A.txt", L"b.dat", L"one/"});
    search.folderNames = false;
    CHECK(names({L"*"}) == Names{L"A.txt", L"b.dat"});
    CHECK(names({L"one"}).empty());
}

TEST_CASE_FIXTURE(Inputs, "what is hidden or the system's is passed over, unless it is asked for") {
    search.recurse = true;
    for (const wchar_t* spec : {L"hid.txt", L"secret", L"system", L"h*", L"secret*", L"nothing", L"nothing*"})
        checkFailure({L"A.txt", spec}, ERROR_FILE_NOT_FOUND, spec);
    CHECK(names({L"secret\\e.txt"}) == Names{L"e.txt"});
    search.systemAndHidden = true;
    CHECK(names({L"*.txt"}) == Names{L"A.txt", L"c.txt", L"d.TXT", L"e.txt", L"f.txt", L"hid.txt"});
    CHECK(names({L"hid.txt", L"secret", L"system"}) == Names{L"e.txt", L"f.txt", L"hid.txt"});
}

TEST_CASE_FIXTURE(Inputs, "links to folders are not followed") {
    Links<WIN32_FIND_DATAW, wchar_t>::name = L"two";
    Links<WIN32_FIND_DATAA, char>::name = "two";
    const ReplacedImport wideCall("FindNextFileW", &Links<WIN32_FIND_DATAW, wchar_t>::findNextFile,
                                  Links<WIN32_FIND_DATAW, wchar_t>::real);
    const ReplacedImport ansiCall("FindNextFileA", &Links<WIN32_FIND_DATAA, char>::findNextFile,
                                  Links<WIN32_FIND_DATAA, char>::real);
    search.recurse = true;
    CHECK(names({L"*.txt"}) == Names{L"A.txt", L"c.txt"});
}

TEST_CASE_FIXTURE(Inputs,
                  "one file is taken once, the archive never, and two files of one name are an error") {
    CHECK(names({L"A.txt", L"a.TXT", L"*.txt", file(L".\\one\\..\\A.txt")}) == Names{L"A.txt"});
    write(file(L"one\\B.dat"), "other");
    search.recurse = true;
    checkFailure({L"*"}, ERROR_DUP_NAME, path());
    search.folderNames = true;
    CHECK(names({L"*.dat"}) == Names{L"b.dat", L"one/B.dat"});
    search.archive = file(L"B.DAT");
    CHECK(names({L"*.dat"}) == Names{L"one/B.dat"});
    checkFailure({L"b.dat"}, ERROR_FILE_NOT_FOUND, L"b.dat");
}

TEST_CASE_FIXTURE(Inputs, "a folder that cannot be looked into is an error") {
    checkFailure({L"nowhere\\*"}, ERROR_PATH_NOT_FOUND, file(L"nowhere"));
}
