// The zip writer inside one process. What other tools make of its archives is tested in
// tests/support_request.
#include <doctest/doctest.h>

#include "tests/support/zipper.h"
#include "win32/base/error.h"
#include "win32/base/handle.h"
#include "win32/base/text.h"

namespace {

std::wstring currentFolder() {
    wchar_t folder[MAX_PATH] = L"";
    ::GetCurrentDirectoryW(MAX_PATH, folder);
    return folder;
}

using Names = std::vector<std::string>;

}  // namespace

TEST_CASE("every option is off at first") {
    const support::cZip zip;
    CHECK(zip.ZipFile.empty());
    CHECK(zip.BasePath.empty());
    for (bool option : {zip.Encrypt, zip.IncludeSystemAndHiddenFiles, zip.StoreVolumeLabel,
                        zip.StoreDirectories, zip.StoreFolderNames, zip.RecurseSubDirs, zip.UpdateOnlyIfNewer,
                        zip.FreshenFiles, zip.ConvertCRLFToLF, zip.ConvertLFToCRLF, zip.AllowAppend}) {
        CHECK_FALSE(option);
    }
    CHECK(zip.MessageLevel == 0);
    CHECK(zip.FileSpecCount() == 0);
}

TEST_CASE_FIXTURE(Zipper, "a list that finds no file is an error and leaves the archive as it is") {
    TempFolder::write(archive, "no zip at all");
    zip.AddFileSpec(folder.file(L"*.nothing"));
    for (bool append : {false, true}) {
        zip.AllowAppend = append;
        CHECK(failure() == win32Failure(ERROR_FILE_NOT_FOUND));
        CHECK(TempFolder::read(archive) == "no zip at all");
    }
    ::DeleteFileW(archive.c_str());
    CHECK(failure() == win32Failure(ERROR_FILE_NOT_FOUND));
    CHECK(folder.count() == 0);
}

TEST_CASE_FIXTURE(Zipper, "files that are found but not newer, or not there to freshen, are no error") {
    zip.AddFileSpec(file(L"a.txt"));
    REQUIRE(failure() == 0);
    zip.UpdateOnlyIfNewer = true;
    CHECK(failure() == 0);
    zip.UpdateOnlyIfNewer = false;
    zip.FreshenFiles = true;
    zip.AddFileSpec(file(L"b.txt"));
    CHECK(failure() == 0);
    CHECK(names() == Names{"a.txt"});
}

TEST_CASE("the list of specifications is one-based and can be emptied") {
    support::cZip zip;
    CHECK(zip.AddFileSpec(L"a") == 1);
    CHECK(zip.AddFileSpec(L"b") == 2);
    CHECK(zip.FileSpecCount() == 2);
    CHECK(zip.FileSpec(1) == L"a");
    CHECK(zip.FileSpec(2) == L"b");
    for (LONG index : {-1L, 0L, 3L}) CHECK_THROWS_AS(zip.FileSpec(index), win32::Error);
    zip.ClearFileSpecs();
    CHECK(zip.FileSpecCount() == 0);
    CHECK_THROWS_AS(zip.FileSpec(1), win32::Error);
    CHECK(zip.AddFileSpec(L"c") == 1);
}

TEST_CASE_FIXTURE(Zipper, "a file is stored by its bare name, and the current folder stays") {
    const std::wstring before = currentFolder();
    zip.AddFileSpec(file(L"a.xml"));
    zip.Zip();
    CHECK(names() == Names{"a.xml"});
    zip.ClearFileSpecs();
    file(L"b.xml");
    zip.BasePath = folder.path();
    zip.ZipFile = L"archive.zip";
    zip.AddFileSpec(L"b.xml");
    zip.Zip();
    CHECK(names() == Names{"b.xml"});
    CHECK(currentFolder() == before);
    zip.BasePath = folder.file(L"missing");
    CHECK(failure() == win32Failure(ERROR_PATH_NOT_FOUND));
    CHECK(currentFolder() == before);
    CHECK(names() == Names{"b.xml"});
}

TEST_CASE_FIXTURE(Zipper, "hidden and system files are taken only when asked for") {
    file(L"plain.txt");
    const std::wstring hidden = file(L"hidden.txt", "h", FILE_ATTRIBUTE_HIDDEN);
    file(L"system.txt", "s", FILE_ATTRIBUTE_SYSTEM);
    zip.AddFileSpec(folder.file(L"*.txt"));
    zip.Zip();
    CHECK(names() == Names{"plain.txt"});
    zip.IncludeSystemAndHiddenFiles = true;
    zip.Zip();
    CHECK(names().size() == 3);
    for (const ZipEntry& entry : entriesOf(TempFolder::read(archive))) {
        CHECK((entry.attributes & FILE_ATTRIBUTE_HIDDEN) ==
              (entry.name == "hidden.txt" ? FILE_ATTRIBUTE_HIDDEN : 0u));
        CHECK((entry.attributes & FILE_ATTRIBUTE_SYSTEM) ==
              (entry.name == "system.txt" ? FILE_ATTRIBUTE_SYSTEM : 0u));
    }
    zip.IncludeSystemAndHiddenFiles = false;
    zip.ClearFileSpecs();
    zip.AddFileSpec(hidden);
    CHECK(failure() == win32Failure(ERROR_FILE_NOT_FOUND));
}

TEST_CASE_FIXTURE(Zipper, "a file that several specifications mean is stored once") {
    zip.AddFileSpec(file(L"a.txt"));
    zip.AddFileSpec(folder.file(L"A.*"));
    zip.AddFileSpec(folder.path() + L"\\.\\a.txt");
    zip.Zip();
    CHECK(names() == Names{"a.txt"});
}

TEST_CASE_FIXTURE(Zipper, "what cannot be done raises and makes no archive") {
    CHECK(failure() == E_INVALIDARG);
    zip.AddFileSpec(folder.file(L"missing.txt"));
    CHECK(failure() == win32Failure(ERROR_FILE_NOT_FOUND));
    CHECK_THROWS_AS(zip.Delete(), win32::Error);
    zip.ClearFileSpecs();
    zip.AddFileSpec(file(L"a.txt"));
    zip.ConvertCRLFToLF = zip.ConvertLFToCRLF = true;
    CHECK(failure() == E_INVALIDARG);
    zip.ConvertCRLFToLF = zip.ConvertLFToCRLF = false;
    zip.Encrypt = true;
    CHECK(failure() == win32Failure(ERROR_CANCELLED));
    zip.Encrypt = false;
    zip.ZipFile.clear();
    CHECK(failure() == E_INVALIDARG);
    CHECK(folder.count() == 1);
}

TEST_CASE_FIXTURE(Zipper, "an input that cannot be read leaves the archive as it was") {
    const std::wstring good = file(L"a.txt"), locked = file(L"b.txt");
    zip.AddFileSpec(good);
    zip.Zip();
    const std::string before = TempFolder::read(archive);
    zip.AddFileSpec(locked);
    const win32::OwnedFile lock(
        ::CreateFileW(locked.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    REQUIRE(lock);
    for (bool append : {false, true}) {
        zip.AllowAppend = append;
        CHECK(failure() == win32Failure(ERROR_SHARING_VIOLATION));
        CHECK(TempFolder::read(archive) == before);
    }
    CHECK(folder.count() == 3);
}

TEST_CASE_FIXTURE(Zipper, "a read-only archive is refused") {
    zip.AddFileSpec(file(L"a.txt"));
    file(L"archive.zip", "kept", FILE_ATTRIBUTE_READONLY);
    CHECK(failure() == win32Failure(ERROR_ACCESS_DENIED));
    CHECK(TempFolder::read(archive) == "kept");
    CHECK(folder.count() == 2);
}

TEST_CASE_FIXTURE(Zipper, "what a handler throws comes out, and the archive stays") {
    zip.AddFileSpec(file(L"a.txt"));
    zip.Zip();
    const std::string before = TempFolder::read(archive);
    zip.Progress = [](const std::wstring&, LONG) { win32::raise(E_FAIL, L"thrown by Progress"); };
    CHECK(failure() == E_FAIL);
    zip.Progress = nullptr;
    zip.Cancel = [](bool&, const std::wstring&) { win32::raise(E_ABORT, L"thrown by Cancel"); };
    CHECK(failure() == E_ABORT);
    zip.Cancel = nullptr;
    zip.Encrypt = true;
    zip.PasswordRequest = [](bool&, std::wstring&) { win32::raise(E_NOTIMPL, L"thrown by PasswordRequest"); };
    CHECK(failure() == E_NOTIMPL);
    CHECK(TempFolder::read(archive) == before);
    CHECK(folder.count() == 2);
}

TEST_CASE_FIXTURE(Zipper, "a password that the code page lacks is refused") {
    zip.AddFileSpec(file(L"a.txt"));
    zip.Encrypt = true;
    zip.PasswordRequest = [](bool&, std::wstring& password) { password = L"\x65E5\x672C"; };
    CHECK(failure() == win32Failure(ERROR_NO_UNICODE_TRANSLATION));
    CHECK(folder.count() == 1);
}

TEST_CASE_FIXTURE(Zipper, "events name the entry and go from 0 to 100") {
    zip.AddFileSpec(file(L"big.bin", std::string(300000, 'x')));
    std::vector<LONG> percents;
    int cancels = 0, passwords = 0;
    zip.Encrypt = true;
    zip.Progress = [&](const std::wstring& name, LONG percent) {
        CHECK(name == L"big.bin");
        percents.push_back(percent);
    };
    zip.Cancel = [&](bool& cancel, const std::wstring&) {
        CHECK_FALSE(cancel);
        ++cancels;
    };
    zip.PasswordRequest = [&](bool& refuse, std::wstring& password) {
        CHECK_FALSE(refuse);
        CHECK(password.empty());
        password = L"secret";
        ++passwords;
    };
    zip.Zip();
    REQUIRE(percents.size() > 10);
    CHECK(percents.front() == 0);
    CHECK(percents.back() == 100);
    CHECK(cancels >= static_cast<int>(percents.size()));
    CHECK(passwords == 1);
    CHECK((entriesOf(TempFolder::read(archive))[0].flags & 1) == 1);
}

TEST_CASE_FIXTURE(Zipper, "names beyond ASCII carry the flag of UTF-8, others do not") {
    zip.AddFileSpec(file(L"a.txt"));
    zip.AddFileSpec(
        file(L"\xDC"
             L"ber.txt"));
    zip.Zip();
    const auto entries = entriesOf(TempFolder::read(archive));
    REQUIRE(entries.size() == 2);
    CHECK((entries[0].flags & 0x800) == 0);
    CHECK(entries[0].system == 0);
    CHECK(entries[1].name ==
          "\xC3\x9C"
          "ber.txt");
    CHECK((entries[1].flags & 0x800) == 0x800);
    CHECK(entries[1].system == 3);
}

TEST_CASE_FIXTURE(Zipper, "deleting clears nothing but the listed entries and leaves the options alone") {
    zip.AddFileSpec(file(L"a.txt"));
    zip.AddFileSpec(file(L"b.txt"));
    zip.Zip();
    zip.ClearFileSpecs();
    zip.AddFileSpec(L"A.TXT");
    zip.Delete();
    CHECK(names() == Names{"b.txt"});
    // The same object goes on making archives.
    zip.ClearFileSpecs();
    zip.AddFileSpec(folder.file(L"a.txt"));
    zip.AllowAppend = true;
    zip.Zip();
    CHECK(names() == Names{"b.txt", "a.txt"});
}
