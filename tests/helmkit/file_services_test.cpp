#include "helmkit/file_services.h"

#include <doctest/doctest.h>

#include "tests/support/helmkit_classes.h"
#include "tests/support/memory_shortage.h"
#include "tests/support/objects.h"
#include "tests/support/replaced_import.h"
#include "tests/support/short_read.h"
#include "tests/support/temp_folder.h"
#include "win32/base/flavour.h"
#include "win32/files/files.h"

namespace {

struct Files {
    TempFolder folder;
    win32::ComPtr<helmkit::server::FileServices> services = make<helmkit::server::FileServices>();

    std::wstring read(const std::wstring& path) {
        return stringFrom([&](BSTR* text) { return services->ReadTextFile(bs(path).get(), text); });
    }
    HRESULT write(const std::wstring& path, const std::wstring& text) {
        return services->WriteTextFile(bs(path).get(), bs(text).get());
    }
    bool exists(const std::wstring& path) {
        VARIANT_BOOL answer = VARIANT_FALSE;
        REQUIRE(services->FileExists(bs(path).get(), &answer) == S_OK);
        return answer == VARIANT_TRUE;
    }
    ULONG byteCount(const std::wstring& path) {
        SAFEARRAY* bytes = nullptr;
        REQUIRE(services->ReadFileBytes(bs(path).get(), &bytes) == S_OK);
        REQUIRE(bytes);
        CHECK(::SafeArrayGetDim(bytes) == 1);
        CHECK(::SafeArrayGetElemsize(bytes) == 1);
        CHECK(bytes->rgsabound[0].lLbound == 0);
        ULONG count = bytes->rgsabound[0].cElements;
        ::SafeArrayDestroy(bytes);
        return count;
    }
};

// A move that Windows refuses: the first, the second, ...
int refusedMove = 0, moves = 0;
BOOL(WINAPI* realMove)(const char*, const char*);

BOOL WINAPI moveFile(const char* from, const char* to) {
    if (++moves != refusedMove) return realMove(from, to);
    ::SetLastError(ERROR_SHARING_VIOLATION);
    return FALSE;
}

// The longest of what is written at once.
DWORD longestWrite = 0;
BOOL(WINAPI* realWrite)(HANDLE, const void*, DWORD, DWORD*, OVERLAPPED*);
BOOL WINAPI writeFile(HANDLE file, const void* bytes, DWORD count, DWORD* written, OVERLAPPED* overlapped) {
    longestWrite = count > longestWrite ? count : longestWrite;
    return realWrite(file, bytes, count, written, overlapped);
}

// As where the ANSI code page is UTF-8, which takes a pair of surrogates for one character.
int(WINAPI* realToBytes)(UINT, DWORD, const wchar_t*, int, char*, int, const char*, BOOL*);
int WINAPI toBytes(UINT, DWORD, const wchar_t* text, int length, char* bytes, int room, const char*, BOOL*) {
    return realToBytes(CP_UTF8, 0, text, length, bytes, room, nullptr, nullptr);
}

// The arrays that there are, and the most that one was asked to hold.
int arrays = 0;
ULONG mostAsked = 0;
SAFEARRAY*(WINAPI* realCreate)(VARTYPE, LONG, ULONG);
SAFEARRAY* WINAPI createArray(VARTYPE type, LONG first, ULONG count) {
    mostAsked = count > mostAsked ? count : mostAsked;
    if (count > (1 << 20)) return nullptr;
    ++arrays;
    return realCreate(type, first, count);
}
HRESULT(WINAPI* realDestroy)(SAFEARRAY*);
HRESULT WINAPI destroyArray(SAFEARRAY* array) {
    if (array) --arrays;
    return realDestroy(array);
}

// No memory for a text whose characters are written later.
BSTR(WINAPI* realAllocate)(const wchar_t*, UINT);
BSTR WINAPI allocate(const wchar_t* text, UINT length) {
    return text ? realAllocate(text, length) : nullptr;
}

void makeSparse(const std::wstring& path, DWORD size) {
    const win32::OwnedFile file(
        ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    LONG high = 0;
    ::SetFilePointer(file.get(), static_cast<LONG>(size), &high, FILE_BEGIN);
    REQUIRE(::SetEndOfFile(file.get()));
}

std::string allBytes() {
    std::string bytes;
    for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
    return bytes;
}

}  // namespace

TEST_CASE_FIXTURE(Files, "every byte goes through text and back") {
    std::wstring path = folder.file(L"all.bin");
    TempFolder::write(path, allBytes());
    std::wstring text = read(path);
    REQUIRE(text.size() == 256);
    for (wchar_t i = 0; i < 256; ++i) REQUIRE(text[i] == i);
    CHECK(write(folder.file(L"copy.bin"), text) == S_OK);
    CHECK(TempFolder::read(folder.file(L"copy.bin")) == allBytes());
    CHECK(folder.count() == 2);
}

TEST_CASE_FIXTURE(Files, "characters that are no bytes go through the code page") {
    std::wstring path = folder.file(L"euro.txt");
    CHECK(write(path, L"a\u20AC\u0416\u00E4z") == S_OK);
    CHECK(TempFolder::read(path) == "a" + win32::toAnsi(L"\u20AC\u0416") + "\xE4z");
}

TEST_CASE_FIXTURE(Files,
                  "where the code page is UTF-8, pairs stay together wherever a piece of the text ends") {
    const ReplacedImport utf8("WideCharToMultiByte", &toBytes, realToBytes);
    const std::wstring path = folder.file(L"pairs.txt"), pair = L"\xD83D\xDE00";
    const std::string character = "\xF0\x9F\x98\x80";
    const struct {
        std::wstring text;
        std::string bytes;
    } rows[] = {{L"\u0100", "\xC4\x80"},
                {L"\u00FF\u0100\u00FF", "\xFF\xC4\x80\xFF"},
                {L"a" + pair + L"z", "a" + character + "z"},
                {pair + pair, character + character},
                {L"\xE9" + pair + L"\u20AC\xE9" + pair, "\xE9" + character + "\xE2\x82\xAC\xE9" + character}};
    for (const auto& row : rows) {
        CHECK(write(path, row.text) == S_OK);
        CHECK(TempFolder::read(path) == row.bytes);
    }
    const size_t piece = 1 << 16;
    for (size_t before : {piece - 2, piece - 1, piece}) {
        const std::string begin(before, 'a'), end(piece, 'b');
        CHECK(write(path, std::wstring(before, L'a') + pair + std::wstring(piece, L'b')) == S_OK);
        const bool isSame = TempFolder::read(path) == begin + character + end;
        CHECK(isSame);
        // Half a pair at the very end is written all the same.
        CHECK(write(path, std::wstring(before, L'a') + L"\xD83D") == S_OK);
        CHECK(TempFolder::read(path).size() == before + 3);
    }
}

TEST_CASE_FIXTURE(Files, "no more than 64 KiB are written at once") {
    const ReplacedImport counted("WriteFile", &writeFile, realWrite);
    longestWrite = 0;
    CHECK(write(folder.file(L"long.txt"), std::wstring(1 << 18, L'x')) == S_OK);
    CHECK(longestWrite == 1 << 16);
}

TEST_CASE_FIXTURE(
    Files, "of a file that is cut while it is read the text is what was there, and there are no bytes") {
    const std::wstring path = folder.file(L"cut");
    TempFolder::write(path, "0123456789");
    for (DWORD left : {0, 4, 9, 10}) {
        {
            const ShortRead cut(left);
            CHECK(read(path) == std::wstring(L"0123456789").substr(0, left));
        }
        const ShortRead cut(left);
        CHECK(byteCount(path) == (left == 10 ? 10 : 0));
    }
}

TEST_CASE_FIXTURE(Files, "a file of 1 GiB is no text") {
    const std::wstring path = folder.file(L"sparse");
    const win32::BString given(path);
    const ReplacedImport scarce("SysAllocStringLen", &allocate, realAllocate);
    for (const auto& [size, expected] :
         {std::pair(0x3FFFFFFFu, E_OUTOFMEMORY), {0x40000000u, HRESULT_FROM_WIN32(ERROR_FILE_TOO_LARGE)}}) {
        makeSparse(path, size);
        BSTR text = nullptr;
        CHECK(services->ReadTextFile(given.get(), &text) == expected);
    }
}

TEST_CASE_FIXTURE(Files, "a file of 2 GiB is not even tried to be held, and no array is left behind") {
    const HelmkitClasses classes;
    const ReplacedImport create("SafeArrayCreateVector", &createArray, realCreate);
    const ReplacedImport destroy("SafeArrayDestroy", &destroyArray, realDestroy);
    const std::wstring path = folder.file(L"sparse");
    for (const auto& [size, asked] : {std::pair(0x7FFFFFFFu, 0x7FFFFFFFu), {0x80000000u, 0u}}) {
        makeSparse(path, size);
        mostAsked = 0;
        CHECK(byteCount(path) == 0);
        CHECK(mostAsked == asked);
    }
    TempFolder::write(path, "0123456789");
    helmkit::fileServices().ReadFileBytes(path);
    CHECK(arrays == 0);
    const ShortRead cut(4);
    CHECK(byteCount(path) == 0);
    CHECK(arrays == 0);
}

TEST_CASE_FIXTURE(Files, "writing replaces a file completely and leaves nothing beside it") {
    std::wstring path = folder.file(L"win.ini");
    TempFolder::write(path, "a much longer text than the new one");
    ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    CHECK(write(path, L"new") == S_OK);
    CHECK(TempFolder::read(path) == "new");
    DWORD attributes = ::GetFileAttributesW(path.c_str());
    CHECK((attributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM)) ==
          (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM));
    CHECK(write(path, L"") == S_OK);
    CHECK(TempFolder::read(path) == "");
    CHECK(folder.count() == 1);
}

TEST_CASE_FIXTURE(Files, "a long text is written piece by piece, no character torn apart") {
    const std::wstring path = folder.file(L"long.txt"), pair = L"\xD83D\xDE00";
    const size_t piece = 1 << 16;
    std::wstring text(piece - 1, L'a');
    text += pair + std::wstring(piece - 2, L'\xE9') + L"\x20AC" + std::wstring(40 * piece, L'b');
    const win32::BString given(text);
    MemoryPeak peak;
    CHECK(services->WriteTextFile(bs(path).get(), given.get()) == S_OK);
    CHECK(peak.bytes() < 4 * piece);
    // What the code page makes of the pair, whether one character or two, is not what is asked here.
    const std::string expected = std::string(piece - 1, 'a') + win32::toAnsi(pair) +
                                 std::string(piece - 2, '\xE9') + win32::toAnsi(L"\x20AC") +
                                 std::string(40 * piece, 'b');
    const bool isSame = TempFolder::read(path) == expected;
    CHECK(isSame);
}

TEST_CASE_FIXTURE(Files, "a read-only file is refused and stays as it was") {
    std::wstring path = folder.file(L"system.ini");
    TempFolder::write(path, "old");
    ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    CHECK(write(path, L"new") == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    CHECK(TempFolder::read(path) == "old");
    CHECK((::GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_READONLY) != 0);
    CHECK(folder.count() == 1);
}

TEST_CASE_FIXTURE(Files, "a file that is in use is refused and stays as it was") {
    std::wstring path = folder.file(L"used.ini");
    TempFolder::write(path, "old");
    {
        win32::OwnedFile user(
            ::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
        REQUIRE(user);
        CHECK(FAILED(write(path, L"new")));
    }
    CHECK(TempFolder::read(path) == "old");
    CHECK(folder.count() == 1);
}

TEST_CASE_FIXTURE(Files, "on Windows 98 a file that cannot be replaced is put back under its name") {
    if (win32::flavour() == win32::Flavour::wide) return;  // the NT family replaces in one step
    const ReplacedImport refusing("MoveFileA", &moveFile, realMove);
    const std::wstring path = folder.file(L"win.ini");
    TempFolder::write(path, "old");
    ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
    for (const auto& [refused, made] : {std::pair(1, 1), {2, 3}}) {
        refusedMove = refused;
        moves = 0;
        CHECK(write(path, L"new") == HRESULT_FROM_WIN32(ERROR_SHARING_VIOLATION));
        CHECK(moves == made);
        CHECK(TempFolder::read(path) == "old");
        CHECK((::GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_HIDDEN) != 0);
        CHECK(folder.count() == 1);
    }
    refusedMove = 0;
    CHECK(write(path, L"new") == S_OK);
    CHECK(TempFolder::read(path) == "new");
    CHECK(folder.count() == 1);
}

TEST_CASE_FIXTURE(Files, "a file cannot be written where a folder stands or none is") {
    CHECK(FAILED(write(folder.path(), L"x")));
    CHECK(FAILED(write(folder.file(L"no\\folder.txt"), L"x")));
    CHECK(FAILED(write(L"", L"x")));
    CHECK(FAILED(write(folder.file(L"a") + std::wstring(L"\0b", 2), L"x")));
    CHECK(folder.count() == 0);
}

TEST_CASE_FIXTURE(Files, "a folder is made once, a file in its place is an error") {
    std::wstring path = folder.file(L"Backup");
    CHECK(services->CreateFolder(bs(path).get()) == S_OK);
    CHECK(services->CreateFolder(bs(path).get()) == S_OK);
    CHECK((::GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_DIRECTORY) != 0);
    TempFolder::write(folder.file(L"file"), "x");
    CHECK(FAILED(services->CreateFolder(bs(folder.file(L"file")).get())));
    CHECK(FAILED(services->CreateFolder(bs(folder.file(L"no\\such")).get())));
}

TEST_CASE_FIXTURE(Files, "a file exists, a folder and nothing do not") {
    TempFolder::write(folder.file(L"here"), "");
    CHECK(exists(folder.file(L"here")));
    CHECK_FALSE(exists(folder.path()));
    CHECK_FALSE(exists(folder.file(L"gone")));
    CHECK_FALSE(exists(L""));
    CHECK_FALSE(exists(folder.file(L"here") + std::wstring(L"\0x", 2)));
    CHECK_FALSE(exists(L"\\\\?\\bad:|path"));
}

TEST_CASE_FIXTURE(Files, "bytes of a file, none of what cannot be read") {
    TempFolder::write(folder.file(L"five"), "12345");
    TempFolder::write(folder.file(L"none"), "");
    CHECK(byteCount(folder.file(L"five")) == 5);
    CHECK(byteCount(folder.file(L"none")) == 0);
    CHECK(byteCount(folder.file(L"gone")) == 0);
    CHECK(byteCount(folder.path()) == 0);
    win32::OwnedFile locked(
        ::CreateFileW(folder.file(L"five").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    CHECK(byteCount(folder.file(L"five")) == 0);
}

TEST_CASE_FIXTURE(Files, "reading what is missing raises the Windows error with a description") {
    win32::BString text;
    CHECK(services->ReadTextFile(bs(folder.file(L"gone")).get(), text.out()) ==
          HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
    win32::ComPtr<IErrorInfo> info;
    REQUIRE(::GetErrorInfo(0, info.out()) == S_OK);
    win32::BString description;
    info->GetDescription(description.out());
    CHECK(description.text().find(folder.file(L"gone")) == 0);
    CHECK(services->ReadTextFile(bs(L"x").get(), nullptr) == E_POINTER);
}

TEST_CASE_FIXTURE(Files, "long names and the search follow Windows") {
    std::wstring path = folder.file(L"A long file name.text");
    TempFolder::write(path, "x");
    CHECK(win32::searchPath(path) == path);
    CHECK(win32::searchPath(folder.file(L"gone")) == L"");
    CHECK(win32::searchPath(std::wstring(3000, L'a')) == L"");
    CHECK(win32::longPath(path) == path);
    CHECK(win32::longPath(folder.file(L"gone")) == L"");
    wchar_t shortPath[MAX_PATH] = L"";
    REQUIRE(::GetShortPathNameW(path.c_str(), shortPath, MAX_PATH) > 0);
    CHECK(win32::sameIgnoringCase(win32::longPath(shortPath), win32::longPath(path)));
}
