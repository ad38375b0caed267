// What becomes of the entries of an archive, option by option, and what is told on the way.
#include <algorithm>
#include <cstdint>
#include <functional>

#include <doctest/doctest.h>

#include "tests/support/handmade_zip.h"
#include "tests/support/replaced_import.h"
#include "tests/support/zipper.h"
#include "win32/base/flavour.h"
#include "win32/base/handle.h"
#include "win32/base/text.h"

namespace {

using Names = std::vector<std::string>;
using Told = std::vector<std::wstring>;

const std::string longText(5000, 't');
// An extra field of another program, which tells a time of 1970.
const std::string timeField("UT\5\0\1\0\0\0\0", 9);

// Seconds after a moment of the year 2020 whose second is even.
FILETIME moment(int seconds) {
    const int64_t steps = 132223104000000000 + int64_t{10000000} * seconds;
    return {static_cast<DWORD>(steps), static_cast<DWORD>(steps >> 32)};
}

// The root whose label was asked for, and the label.
std::wstring askedRoot, volume;

template <class Char>
BOOL WINAPI volumeInformation(const Char* root, Char* label, DWORD, DWORD*, DWORD*, DWORD*, Char*, DWORD) {
    askedRoot.assign(root, root + std::char_traits<Char>::length(root));
    std::copy(volume.begin(), volume.end(), label);
    label[volume.size()] = 0;
    return TRUE;
}

int(WINAPI* realToWide)(UINT, DWORD, const char*, int, wchar_t*, int);
int conversions = 0;
int WINAPI toWide(UINT page, DWORD flags, const char* text, int length, wchar_t* wide, int room) {
    if (page == CP_UTF8) {
        ++conversions;
        CHECK(flags == 0);
    }
    return realToWide(page, flags, text, length, wide, room);
}

struct Updater : Zipper {
    Told told, asked;  // by Progress and by Cancel

    std::wstring writtenAt(const std::wstring& path, int seconds) {
        const win32::OwnedFile open(::CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ,
                                                  nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                                                  nullptr));
        const FILETIME time = moment(seconds);
        REQUIRE(open);
        REQUIRE(::SetFileTime(open.get(), nullptr, nullptr, &time));
        return path;
    }
    std::wstring makeFolder(const std::wstring& name) {
        REQUIRE(::CreateDirectoryW(folder.file(name).c_str(), nullptr));
        return folder.file(name);
    }
    ZipEntry entry(const std::string& name) const {
        for (const ZipEntry& found : entries()) {
            if (found.name == name) return found;
        }
        FAIL("there is no entry " << name);
        return {};
    }
    bool holds(const std::string& name, const std::string& content) const {
        const ZipEntry found = entry(name);
        return found.size == content.size() && found.crc == crcOf(content);
    }
    void list(const std::vector<std::wstring>& specs) {
        zip.ClearFileSpecs();
        for (const std::wstring& spec : specs) zip.AddFileSpec(spec);
    }
    void listen() {
        zip.Progress = [this](const std::wstring& name, LONG percent) {
            told.push_back(name + L' ' + std::to_wstring(percent));
        };
        zip.Cancel = [this](bool&, const std::wstring& name) { asked.push_back(name); };
    }
    // What deleting throws: its number, and its description.
    std::pair<long, std::wstring> deletionFailure() {
        try {
            zip.Delete();
            return {};
        } catch (const win32::Error& error) {
            return {error.number, error.description};
        }
    }
};

}  // namespace

TEST_CASE_FIXTURE(Updater,
                  "entries stay, are replaced in their place or come behind, or the archive is new") {
    TempFolder::write(archive, handmadeZip({{"Kept.txt", "kept"}, {"A.TXT", "old a"}, {"last", "last"}}));
    list({file(L"a.txt", "new a"), file(L"b.txt", "new b")});
    SUBCASE("appending") {
        zip.AllowAppend = true;
        zip.Zip();
        CHECK(names() == Names{"Kept.txt", "A.TXT", "last", "b.txt"});
        CHECK(holds("Kept.txt", "kept"));
        CHECK(holds("A.TXT", "new a"));
        CHECK(holds("b.txt", "new b"));
    }
    SUBCASE("freshening") {
        zip.FreshenFiles = true;
        zip.Zip();
        CHECK(names() == Names{"Kept.txt", "A.TXT", "last"});
        CHECK(holds("A.TXT", "new a"));
    }
    SUBCASE("newer files only") {
        zip.UpdateOnlyIfNewer = true;
        writtenAt(folder.file(L"a.txt"), 0);
        zip.Zip();
        CHECK(names() == Names{"Kept.txt", "A.TXT", "last", "b.txt"});
        CHECK(holds("A.TXT", "old a"));
    }
    SUBCASE("newer files only, and none added") {
        zip.UpdateOnlyIfNewer = zip.FreshenFiles = true;
        writtenAt(folder.file(L"a.txt"), 0);
        zip.Zip();
        CHECK(names() == Names{"Kept.txt", "A.TXT", "last"});
        CHECK(holds("A.TXT", "old a"));
    }
    SUBCASE("nothing of it") {
        zip.Zip();
        CHECK(names() == Names{"a.txt", "b.txt"});
        CHECK(holds("a.txt", "new a"));
    }
}

TEST_CASE_FIXTURE(Updater, "freshening wants an archive, appending and updating make one") {
    list({file(L"a.txt")});
    zip.FreshenFiles = true;
    CHECK(failure() == win32Failure(ERROR_FILE_NOT_FOUND));
    CHECK(folder.count() == 1);
    zip.FreshenFiles = false;
    for (bool* option : {&zip.AllowAppend, &zip.UpdateOnlyIfNewer}) {
        *option = true;
        CHECK(failure() == 0);
        CHECK(names() == Names{"a.txt"});
        REQUIRE(::DeleteFileW(archive.c_str()));
        *option = false;
    }
}

TEST_CASE_FIXTURE(Updater, "a file is newer than its entry from the next even second on") {
    for (int written : {0, 1}) {
        CAPTURE(written);
        zip.UpdateOnlyIfNewer = false;
        list({writtenAt(file(L"a.txt", "old"), written)});
        zip.Zip();
        zip.UpdateOnlyIfNewer = true;
        for (int changed : {-100000, 0, 1}) {
            CAPTURE(changed);
            writtenAt(file(L"a.txt", "changed"), changed);
            zip.Zip();
            CHECK(holds("a.txt", "old"));
        }
        writtenAt(file(L"a.txt", "newer"), 2);
        zip.Zip();
        CHECK(holds("a.txt", "newer"));
    }
}

TEST_CASE_FIXTURE(Updater, "what replaces an entry takes nothing over from it") {
    TempFolder::write(archive, handmadeZip({{"a.txt", longText, 0x5D742000, timeField},
                                            {"b.txt", "kept", 0x5D742000, timeField}}));
    std::string words;
    for (int i = 0; i < 3000; ++i) words += std::to_string(i * i % 1009) + ' ';
    list({file(L"a.txt", words), file(L"new.txt", words)});
    zip.AllowAppend = true;
    zip.Zip();
    const ZipEntry replaced = entry("a.txt"), kept = entry("b.txt");
    CHECK(replaced.method == 8);
    CHECK(replaced.packed < replaced.size / 2);
    CHECK(replaced.packed == entry("new.txt").packed);
    CHECK(replaced.extra == 0);
    CHECK(replaced.localExtra == 0);
    CHECK(replaced.time != 0x5D742000);
    CHECK(kept.method == 0);
    CHECK(kept.time == 0x5D742000);
    CHECK(kept.extra == timeField.size());
}

TEST_CASE_FIXTURE(Updater, "folders get entries of their own with folder names, and get them once") {
    const std::wstring sub = makeFolder(L"sub");
    writtenAt(file(L"sub\\a.txt"), 0);
    writtenAt(sub, 0);
    zip.BasePath = folder.path();
    list({L"sub"});
    zip.RecurseSubDirs = zip.StoreDirectories = true;
    zip.Zip();
    CHECK(names() == Names{"a.txt"});
    zip.StoreFolderNames = zip.AllowAppend = true;
    ::DeleteFileW(archive.c_str());
    for (int i = 0; i < 2; ++i) {
        zip.Zip();
        REQUIRE(names() == Names{"sub/", "sub/a.txt"});
        CHECK(entry("sub/").attributes == FILE_ATTRIBUTE_DIRECTORY);
        CHECK(entry("sub/").size == 0);
        CHECK(entry("sub/").time == entry("sub/a.txt").time);
    }
    ::DeleteFileW(archive.c_str());
    zip.StoreDirectories = false;
    zip.Zip();
    CHECK(names() == Names{"sub/a.txt"});
}

TEST_CASE_FIXTURE(Updater,
                  "entries carry the attributes of their files, names beyond ASCII a file mode too") {
    const unsigned archived = FILE_ATTRIBUTE_ARCHIVE, readOnly = FILE_ATTRIBUTE_READONLY;
    zip.BasePath = folder.path();
    zip.RecurseSubDirs = zip.StoreDirectories = zip.StoreFolderNames = true;
    makeFolder(L"\xFC");
    file(L"plain", "", archived);
    file(L"fixed", "", archived | readOnly);
    file(L"\xE4", "", archived);
    file(L"\xFC\\\xF6", "", archived | readOnly);
    list({L"plain", L"fixed", L"\xE4", L"\xFC"});
    zip.Zip();
    const struct {
        const char* name;
        unsigned system, attributes;
    } rows[] = {{"plain", 0, archived},
                {"fixed", 0, archived | readOnly},
                {"\xC3\xA4", 3, 0100644u << 16 | archived},
                {"\xC3\xBC/", 3, 040755u << 16 | FILE_ATTRIBUTE_DIRECTORY},
                {"\xC3\xBC/\xC3\xB6", 3, 0100444u << 16 | archived | readOnly}};
    REQUIRE(names().size() == std::size(rows));
    for (const auto& row : rows) {
        CAPTURE(row.name);
        CHECK(entry(row.name).system == row.system);
        CHECK(entry(row.name).attributes == row.attributes);
    }
}

TEST_CASE_FIXTURE(Updater, "the volume's label is stored once, as an empty entry of its own kind") {
    const ReplacedImport wideCall("GetVolumeInformationW", &volumeInformation<wchar_t>);
    const ReplacedImport ansiCall("GetVolumeInformationA", &volumeInformation<char>);
    file(L"a.txt");
    zip.BasePath = folder.path();
    zip.AllowAppend = true;
    volume = L"My Disk";
    list({L"a.txt"});
    CHECK(failure() == 0);
    CHECK(names() == Names{"a.txt"});
    zip.StoreVolumeLabel = true;
    volume.clear();
    CHECK(failure() == 0);
    CHECK(askedRoot == folder.path().substr(0, 3));
    CHECK(names() == Names{"a.txt"});
    volume = L"My Disk";
    for (int i = 0; i < 2; ++i) {
        CHECK(failure() == 0);
        REQUIRE(names() == Names{"a.txt", "My Disk"});
        CHECK(entry("My Disk").attributes == 8);
        CHECK(entry("My Disk").system == 0);
        CHECK(entry("My Disk").size == 0);
        volume = L"MY DISK";
    }
    TempFolder::write(archive, handmadeZip({{"my disk", ""}}));
    CHECK(failure() == 0);
    CHECK(names() == Names{"my disk", "a.txt"});
}

TEST_CASE_FIXTURE(Updater,
                  "a list that means folders alone leaves nothing to be stored, and the archive as it is") {
    TempFolder::write(archive, handmadeZip({{"kept", "kept"}}));
    const std::string before = TempFolder::read(archive);
    list({makeFolder(L"sub")});
    for (bool append : {false, true}) {
        zip.AllowAppend = append;
        try {
            zip.Zip();
            FAIL_CHECK("nothing was thrown");
        } catch (const win32::Error& error) {
            CHECK(error.number == win32Failure(ERROR_FILE_NOT_FOUND));
            CHECK(error.description == L"No file was found to be stored in " + archive);
        }
        CHECK(TempFolder::read(archive) == before);
    }
}

TEST_CASE_FIXTURE(Updater, "the first character beyond ASCII is one") {
    if (win32::flavour() == win32::Flavour::ansi) return;  // the code page lacks it
    list({file(L"\x7F"), file(L"\x80")});
    zip.Zip();
    CHECK(entry("\x7F").system == 0);
    CHECK(entry("\xC2\x80").system == 3);
}

TEST_CASE_FIXTURE(Updater, "only what is written is encrypted, with a password that can be typed") {
    TempFolder::write(archive, handmadeZip({{"kept", "kept"}, {"b.txt", "old"}}));
    const auto isLocked = [&](const char* name) { return (entry(name).flags & 1) == 1; };
    list({file(L"a.txt", "a"), file(L"b.txt", "b")});
    zip.AllowAppend = zip.Encrypt = true;
    const std::string before = TempFolder::read(archive);
    for (const std::wstring& given : {std::wstring(), std::wstring(L"a\0b", 3), std::wstring(L"\x65E5")}) {
        zip.PasswordRequest = [&](bool&, std::wstring& password) { password = given; };
        CHECK(failure() == win32Failure(given.empty() ? ERROR_CANCELLED : ERROR_NO_UNICODE_TRANSLATION));
    }
    zip.PasswordRequest = [](bool& refuse, std::wstring& password) {
        refuse = true;
        password = L"secret";
    };
    CHECK(failure() == win32Failure(ERROR_CANCELLED));
    CHECK(TempFolder::read(archive) == before);
    zip.PasswordRequest = [](bool&, std::wstring& password) { password = L"s\u00E9cret"; };
    REQUIRE(failure() == 0);
    CHECK_FALSE(isLocked("kept"));
    CHECK(isLocked("a.txt"));
    CHECK(isLocked("b.txt"));
    zip.Encrypt = false;
    list({folder.file(L"b.txt")});
    REQUIRE(failure() == 0);
    CHECK(isLocked("a.txt"));
    CHECK_FALSE(isLocked("b.txt"));
    CHECK(holds("b.txt", "b"));
}

TEST_CASE_FIXTURE(Updater,
                  "line ends are converted on the way in, each percentage is told once and in its turn") {
    std::string mixed, lf, crLf;
    for (int i = 0; i < 3000; ++i) {
        mixed += i % 3 ? "line\r\n" : i % 2 ? "\n" : "\r";
        lf += i % 3 ? "line\n" : i % 2 ? "\n" : "\r";
        crLf += i % 3 ? "line\r\n" : i % 2 ? "\r\n" : "\r";
    }
    mixed += "end\r";
    lf += "end\r";
    crLf += "end\r";
    list({file(L"a.txt", mixed)});
    for (const std::string& wanted : {mixed, lf, crLf}) {
        zip.ConvertCRLFToLF = wanted == lf;
        zip.ConvertLFToCRLF = wanted == crLf;
        std::vector<LONG> percents;
        zip.Progress = [&](const std::wstring&, LONG percent) { percents.push_back(percent); };
        zip.Zip();
        CHECK(holds("a.txt", wanted));
        CHECK(percents.front() == 0);
        CHECK(percents.back() == 100);
        CHECK(std::adjacent_find(percents.begin(), percents.end(), std::greater_equal<>()) == percents.end());
    }
}

TEST_CASE_FIXTURE(Updater,
                  "what is done is told and may be stopped at every step, entries that stay among them") {
    TempFolder::write(archive, handmadeZip({{"kept", std::string(200000, 'k')}}));
    const std::string before = TempFolder::read(archive);
    list({file(L"a.txt", longText), file(L"b.txt", "")});
    zip.AllowAppend = true;
    listen();
    zip.Zip();
    CHECK(told == Told{L"a.txt 0", L"a.txt 100", L"b.txt 0", L"b.txt 100"});
    REQUIRE(asked.size() >= 5);
    CHECK(asked.front().empty());
    CHECK(asked.back() == L"b.txt");
    CHECK(std::is_sorted(asked.begin(), asked.end()));
    const Told all = asked;
    // libzip asks a last time when all is done.
    for (size_t stop = 1; stop < all.size(); ++stop) {
        CAPTURE(stop);
        TempFolder::write(archive, before);
        asked.clear();
        zip.Cancel = [&](bool& cancel, const std::wstring& name) {
            asked.push_back(name);
            cancel = asked.size() == stop;
        };
        CHECK(failure() == win32Failure(ERROR_CANCELLED));
        CHECK(asked == Told(all.begin(), all.begin() + static_cast<ptrdiff_t>(stop)));
        CHECK(TempFolder::read(archive) == before);
        asked.clear();
        zip.Cancel = [&](bool&, const std::wstring& name) {
            asked.push_back(name);
            if (asked.size() == stop) win32::raise(E_ABORT, L"thrown by Cancel");
        };
        CHECK(failure() == E_ABORT);
        CHECK(TempFolder::read(archive) == before);
        CHECK(folder.count() == 3);
    }
}

TEST_CASE_FIXTURE(Updater, "names are read from UTF-8 without flags, most of which Windows refuses there") {
    TempFolder::write(archive, handmadeZip({{"a.txt", "1"}, {"b.txt", "2"}}));
    list({L"a.txt"});
    conversions = 0;
    const ReplacedImport call("MultiByteToWideChar", &toWide, realToWide);
    zip.Delete();
    CHECK(conversions >= 4);
    CHECK(names() == Names{"b.txt"});
}

TEST_CASE_FIXTURE(Updater, "deleting means whole names, bare ones where there are none, and folders") {
    TempFolder::write(
        archive,
        handmadeZip(
            {{"a.txt", "1"}, {"sub/", ""}, {"sub/a.txt", "2"}, {"sub/b.TXT", "3"}, {"other/c.dat", "4"}}));
    SUBCASE("a name with its folder, in any letters") {
        list({L"SUB\\A.txt"});
        zip.Delete();
        CHECK(names() == Names{"a.txt", "sub/", "sub/b.TXT", "other/c.dat"});
    }
    SUBCASE("a folder's entry") {
        list({L"sub"});
        zip.Delete();
        CHECK(names() == Names{"a.txt", "sub/a.txt", "sub/b.TXT", "other/c.dat"});
    }
    SUBCASE("a star spans folders, and what is gone already is no error") {
        list({L"a.txt", L"*.txt", L"sub/b.txt"});
        zip.Delete();
        CHECK(names() == Names{"sub/", "other/c.dat"});
    }
    SUBCASE("the bare name where nothing has the whole one") {
        list({L"C:\\elsewhere\\a.txt"});
        zip.Delete();
        CHECK(names() == Names{"sub/", "sub/a.txt", "sub/b.TXT", "other/c.dat"});
    }
    SUBCASE("not with folder names, and nothing goes where one is not found") {
        const std::string before = TempFolder::read(archive);
        zip.StoreFolderNames = true;
        list({L"a.txt", L"C:\\elsewhere\\a.txt"});
        const auto [number, description] = deletionFailure();
        CHECK(number == win32Failure(ERROR_FILE_NOT_FOUND));
        CHECK(description.find(L"C:\\elsewhere\\a.txt") == 0);
        CHECK(TempFolder::read(archive) == before);
    }
    SUBCASE("everything, and the archive with it") {
        list({L"*"});
        zip.Delete();
        CHECK(folder.count() == 0);
        const auto [number, description] = deletionFailure();
        CHECK(number == win32Failure(ERROR_FILE_NOT_FOUND));
        CHECK(description.find(archive) == 0);
    }
    SUBCASE("everything of nothing is not found") {
        TempFolder::write(archive, handmadeZip({}));
        list({L"*"});
        CHECK(deletionFailure().first == win32Failure(ERROR_FILE_NOT_FOUND));
    }
}

TEST_CASE_FIXTURE(Updater,
                  "what is no archive is refused where it is to be kept, by its name, and replaced else") {
    list({file(L"a.txt")});
    const std::string cut = handmadeZip({{"b.txt", "b"}}).substr(0, 60);
    for (const std::string& bytes : {std::string("PK\3\4 and nothing that follows"), cut}) {
        TempFolder::write(archive, bytes);
        zip.AllowAppend = true;
        CHECK(failure() == win32Failure(ERROR_INVALID_DATA));
        const auto [number, description] = deletionFailure();
        CHECK(number == win32Failure(ERROR_INVALID_DATA));
        CHECK(description.find(archive + L": ") == 0);
        CHECK(description.size() > archive.size() + 10);
        CHECK(TempFolder::read(archive) == bytes);
        zip.AllowAppend = false;
        CHECK(failure() == 0);
        CHECK(names() == Names{"a.txt"});
    }
    TempFolder::write(archive, "");
    zip.AllowAppend = true;
    CHECK(failure() == 0);
    CHECK(names() == Names{"a.txt"});
}
