// Files as they are opened, read, written and replaced.
#include "win32/files/files.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <functional>

#include "tests/support/raised.h"
#include "tests/support/replaced_import.h"
#include "tests/support/temp_folder.h"
#include "tests/support/text.h"
#include "win32/base/flavour.h"
#include "win32/files/file_replacement.h"
#include "win32/files/sha256.h"

namespace {

// What files were opened with last, and how often it was asked what stands at a name that ends with ".tmp".
struct Opened {
    DWORD access, share, disposition, flags;
    bool operator==(const Opened&) const = default;
} opened;
bool hasSecurity = false;
int asked = 0;
DWORD answer = 0;  // the error of the first that are asked
int answers = 0;   // so many

template <class Char>
struct Real {
    static inline HANDLE(WINAPI* createFile)(const Char*, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD,
                                             HANDLE);
    static inline DWORD(WINAPI* attributes)(const Char*);
};

template <class Char>
HANDLE WINAPI createFile(const Char* path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                         DWORD disposition, DWORD flags, HANDLE model) {
    opened = {access, share, disposition, flags};
    hasSecurity = security || model;
    return Real<Char>::createFile(path, access, share, security, disposition, flags, model);
}
template <class Char>
DWORD WINAPI attributesOfName(const Char* path) {
    const std::basic_string<Char> text = path;
    const bool isNew = text.size() > 4 && text[text.size() - 4] == Char('.') && text.back() == Char('p');
    if (!isNew || asked++ >= answers) return Real<Char>::attributes(path);
    ::SetLastError(answer);
    return answer ? INVALID_FILE_ATTRIBUTES : FILE_ATTRIBUTE_NORMAL;
}

struct Opening : TempFolder {
    ReplacedImport calls[2] = {{"CreateFileW", &createFile<wchar_t>, Real<wchar_t>::createFile},
                               {"CreateFileA", &createFile<char>, Real<char>::createFile}};
    const bool isWide = win32::flavour() == win32::Flavour::wide;
    const DWORD others = FILE_SHARE_READ | FILE_SHARE_WRITE;

    Opening() { hasSecurity = false; }
    ~Opening() { CHECK_FALSE(hasSecurity); }
};

// A file of so many x, of which no more than 300,000 are read at once.
size_t left = 0;
DWORD largest = 0;
BOOL WINAPI readFile(HANDLE, void* bytes, DWORD count, DWORD* read, OVERLAPPED*) {
    largest = std::max(largest, count);
    *read = static_cast<DWORD>(std::min<size_t>({count, left, 300000}));
    std::fill_n(static_cast<char*>(bytes), *read, 'x');
    left -= *read;
    return TRUE;
}
BOOL WINAPI failingRead(HANDLE, void*, DWORD, DWORD*, OVERLAPPED*) {
    ::SetLastError(ERROR_CRC);
    return FALSE;
}

// A disk that takes so many bytes, told or with an error.
size_t room = 0;
DWORD writeFails = 0;
std::string written;
BOOL WINAPI writeFile(HANDLE, const void* bytes, DWORD count, DWORD* done, OVERLAPPED*) {
    largest = std::max(largest, count);
    *done = static_cast<DWORD>(std::min<size_t>(count, room));
    room -= *done;
    written.append(static_cast<const char*>(bytes), *done);
    ::SetLastError(writeFails);
    return !writeFails;
}

// Where a file is set to, and what that answers.
LONG lowGiven = 0, highGiven = 0;
DWORD methodGiven = 0, moveAnswer = 0, moveError = 0;
DWORD WINAPI setPointer(HANDLE, LONG low, LONG* high, DWORD method) {
    lowGiven = low;
    highGiven = high ? *high : -1;
    methodGiven = method;
    ::SetLastError(moveError);
    return moveAnswer;
}

DWORD sizeLow = 0, sizeHigh = 0;
DWORD WINAPI fileSize(HANDLE, DWORD* high) {
    *high = sizeHigh;
    ::SetLastError(moveError);
    return sizeLow;
}

BOOL WINAPI failingFlush(HANDLE) {
    ::SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

}  // namespace

TEST_CASE_FIXTURE(Opening, "each kind of opening asks for what it needs and lets others work on") {
    write(file(L"a"), "abc");
    const auto expect = [&](DWORD access, DWORD share, DWORD disposition, DWORD flags) {
        CHECK((opened == Opened{access, share, disposition, flags}));
    };
    win32::FileReader reader(file(L"a"));
    expect(GENERIC_READ, others, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    CHECK(win32::createNewFile(file(L"b")));
    expect(GENERIC_WRITE, others, CREATE_NEW, FILE_ATTRIBUTE_NORMAL);
    const DWORD appending = isWide ? FILE_APPEND_DATA | FILE_READ_ATTRIBUTES | SYNCHRONIZE : GENERIC_WRITE;
    win32::AppendFile followed(file(L"c"));
    expect(appending, others, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL);
    win32::AppendFile itself(file(L"c"), win32::Links::refused);
    expect(appending, others, OPEN_ALWAYS,
           FILE_ATTRIBUTE_NORMAL | (isWide ? FILE_FLAG_OPEN_REPARSE_POINT : 0));
    win32::FileReplacement replacement(file(L"a"));
    expect(GENERIC_WRITE, 0, CREATE_NEW, FILE_ATTRIBUTE_NORMAL);
    CHECK(win32::sha256OfFile(file(L"a")).size() == 64);
    expect(GENERIC_READ, others, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN);
    CHECK(itself);
    CHECK_FALSE(win32::AppendFile());
}

TEST_CASE_FIXTURE(TempFolder, "what cannot be opened raises what Windows says, with the path") {
    const std::wstring gone = file(L"gone"), cut = file(std::wstring(L"a\0x", 3));
    CHECK(raises(ERROR_FILE_NOT_FOUND, gone, [&] { win32::FileReader{gone}; }));
    CHECK(raises(ERROR_INVALID_NAME, cut, [&] { win32::FileReader{cut}; }));
    CHECK(raises(ERROR_INVALID_NAME, cut, [&] { win32::AppendFile{cut}; }));
    CHECK(raises(ERROR_INVALID_NAME, cut, [&] { win32::FileReplacement{cut}; }));
    CHECK(raises(ERROR_INVALID_NAME, cut, [&] { win32::createFolder(cut); }));
    CHECK(raises(ERROR_ACCESS_DENIED, path(), [&] { win32::FileReplacement{path()}; }));
    write(file(L"f"), "x");
    CHECK(raises(ERROR_ALREADY_EXISTS, file(L"f"), [&] { win32::createFolder(file(L"f")); }));
    CHECK(raises(ERROR_PATH_NOT_FOUND, file(L"no\\x"), [&] { win32::createFolder(file(L"no\\x")); }));
    CHECK(win32::attributesOf(cut) == INVALID_FILE_ATTRIBUTES);
    CHECK(count() == 1);
}

TEST_CASE_FIXTURE(TempFolder, "a file is read in pieces, from where it is asked, to its end") {
    write(file(L"a"), "0123456789");
    win32::FileReader reader(file(L"a"));
    CHECK(reader.size() == 10);
    char bytes[20] = {};
    reader.skipTo(4);
    CHECK(reader.read(bytes, 3) == 3);
    CHECK(std::string(bytes) == "456");
    CHECK(reader.read(bytes, 20) == 3);
    CHECK(std::string(bytes, 3) == "789");
    CHECK(reader.read(bytes, 20) == 0);

    left = 3000000;
    largest = 0;
    std::string many(4 << 20, '\0');
    {
        const ReplacedImport call("ReadFile", &readFile);
        CHECK(reader.read(many.data(), 2500000) == 2500000);
        CHECK(reader.read(many.data() + 2500000, 600000) == 500000);
    }
    CHECK(largest == 1 << 20);
    CHECK(many.find_first_not_of('x') == 3000000);
    const ReplacedImport call("ReadFile", &failingRead);
    CHECK(raises(ERROR_CRC, file(L"a"), [&] { reader.read(bytes, 1); }));
}

TEST_CASE_FIXTURE(TempFolder, "places and sizes beyond four gigabytes are told in two parts") {
    write(file(L"a"), "x");
    win32::FileReader reader(file(L"a"));
    win32::FileReplacement replacement(file(L"b"));
    const ReplacedImport pointer("SetFilePointer", &setPointer), size("GetFileSize", &fileSize);
    const auto skip = [&] { reader.skipTo(0x345678901); };
    const auto seek = [&] { replacement.seekTo(0x345678901); };
    for (const auto& [call, name] :
         {std::pair<std::function<void()>, const wchar_t*>(skip, L"a"), {seek, L"b"}}) {
        moveError = ERROR_SUCCESS;
        for (DWORD place : {0x45678901ul, INVALID_SET_FILE_POINTER}) {
            moveAnswer = place;
            CHECK_NOTHROW(call());
            CHECK(lowGiven == 0x45678901);
            CHECK(highGiven == 3);
            CHECK(methodGiven == FILE_BEGIN);
        }
        moveError = ERROR_SEEK;
        CHECK(raises(ERROR_SEEK, file(name), call));
        moveAnswer = 5;
        CHECK_NOTHROW(call());
    }
    CHECK(replacement.position() == 0x345678901);
    sizeHigh = 3;
    sizeLow = 0x80000001;
    CHECK(win32::FileReader(file(L"a")).size() == 0x380000001);
    sizeLow = INVALID_FILE_SIZE;
    CHECK(raises(ERROR_SEEK, file(L"a"), [&] { win32::FileReader{file(L"a")}; }));
    moveError = ERROR_SUCCESS;
    CHECK(win32::FileReader(file(L"a")).size() == 0x3FFFFFFFF);
}

TEST_CASE_FIXTURE(TempFolder, "two who append to a file write one behind the other") {
    win32::AppendFile one(file(L"log")), other(file(L"log"));
    one.write("first ");
    other.write("second ");
    one.write("third");
    CHECK(read(file(L"log")) == "first second third");
    const ReplacedImport call("WriteFile", &writeFile);
    writeFails = 0;
    room = 2;
    CHECK(raises(ERROR_DISK_FULL, file(L"log"), [&] { one.write("abc"); }));
    writeFails = ERROR_WRITE_PROTECT;
    CHECK(raises(ERROR_WRITE_PROTECT, file(L"log"), [&] { one.write("abc"); }));
}

TEST_CASE_FIXTURE(TempFolder,
                  "a replacement is written at any place, and takes the file's place at its end") {
    write(file(L"a"), "old");
    {
        win32::FileReplacement replacement(file(L"a"));
        replacement.write("hello", 5);
        CHECK(replacement.position() == 5);
        replacement.seekTo(1);
        CHECK(replacement.position() == 1);
        replacement.write("EL", 2);
        CHECK(replacement.position() == 3);
        CHECK(read(file(L"a")) == "old");
        replacement.commit();
        CHECK(read(file(L"a")) == "hELlo");
    }
    CHECK(count() == 1);
    win32::FileReplacement(file(L"a")).write("gone", 4);
    CHECK(count() == 1);
    CHECK(read(file(L"a")) == "hELlo");
}

TEST_CASE_FIXTURE(TempFolder, "a replacement that is not committed goes, read-only or not") {
    {
        win32::FileReplacement replacement(file(L"a"));
        WIN32_FIND_DATAW found;
        win32::OwnedFind search(::FindFirstFileW(file(L"a.*.tmp").c_str(), &found));
        REQUIRE(search);
        REQUIRE(::SetFileAttributesW(file(found.cFileName).c_str(), FILE_ATTRIBUTE_READONLY));
    }
    CHECK(count() == 0);
}

TEST_CASE_FIXTURE(TempFolder, "a replacement on a full disk is an error, and what was there stays") {
    write(file(L"a"), "old");
    {
        win32::FileReplacement replacement(file(L"a"));
        const ReplacedImport call("WriteFile", &writeFile);
        const std::string bytes = std::string(3000000, 'x') + "y";
        written.clear();
        writeFails = 0;
        room = bytes.size();
        largest = 0;
        replacement.write(bytes.data(), bytes.size());
        CHECK(largest == 1 << 20);
        const bool isSame = written == bytes;
        CHECK(isSame);
        CHECK(replacement.position() == bytes.size());
        room = 2;
        CHECK(raises(ERROR_DISK_FULL, file(L"a"), [&] { replacement.write("abc", 3); }));
        CHECK(replacement.position() == bytes.size() + 2);
        writeFails = ERROR_WRITE_PROTECT;
        CHECK(raises(ERROR_WRITE_PROTECT, file(L"a"), [&] { replacement.write("abc", 3); }));
        const ReplacedImport flush("FlushFileBuffers", &failingFlush);
        CHECK(raises(ERROR_DISK_FULL, file(L"a"), [&] { replacement.commit(); }));
    }
    CHECK(read(file(L"a")) == "old");
    CHECK(count() == 1);
}

TEST_CASE_FIXTURE(TempFolder, "a replacement takes a name that is free, after a hundred it gives up") {
    const ReplacedImport wideCall("GetFileAttributesW", &attributesOfName<wchar_t>,
                                  Real<wchar_t>::attributes);
    const ReplacedImport ansiCall("GetFileAttributesA", &attributesOfName<char>, Real<char>::attributes);
    for (DWORD taken : {ERROR_SUCCESS, ERROR_ACCESS_DENIED}) {
        answer = taken;
        asked = 0;
        answers = 99;
        CHECK_NOTHROW(win32::FileReplacement{file(L"a")});
        CHECK(asked == 100);
        asked = 0;
        answers = 1000;
        CHECK(raises(ERROR_FILE_EXISTS, file(L"a"), [&] { win32::FileReplacement{file(L"a")}; }));
        CHECK(asked == 100);
    }
    CHECK(count() == 0);
}
