// The long path of a file against GetLongPathName's, asked for the whole of it.
#include <doctest/doctest.h>

#include <random>

#include "files/CFileChecker.h"
#include "files/command_line.h"
#include "files/long_paths.h"
#include "startup/ucRun.h"
#include "tests/support/page_fixture.h"
#include "tests/support/replaced_import.h"
#include "win32/base/flavour.h"
#include "win32/base/path.h"
#include "win32/base/text.h"
#include "win32/files/files.h"
#include "win32/system/system.h"

#include <winver.h>

namespace {

const wchar_t* const folderNames[] = {L"A folder of long name", L"short", L"MiXed.Dir", L"two.dots.here",
                                      L"f\xFCr alle"};
const wchar_t* const fileNames[] = {L"a long file name.txt",
                                    L"Short.TXT",
                                    L"two.dots.exe",
                                    L"plain",
                                    L"noextensionatall",
                                    L"a b.txt",
                                    L"x+y.sys",
                                    L".hidden",
                                    L"\xFCml.exe",
                                    L"A~B{C}!.Exe",
                                    L"file.html",
                                    L"longerthan8.c",
                                    L"with blank.dll",
                                    L"(1)@#$%.exe",
                                    L"EightChr.Abc",
                                    L"NineChars.Abc",
                                    L"Base.Four",
                                    L"2Digits9.A0"};

std::wstring shortNameOf(const std::wstring& path) {
    WIN32_FIND_DATAW found;
    win32::OwnedFind search(::FindFirstFileW(path.c_str(), &found));
    REQUIRE(search);
    return found.cAlternateFileName[0] ? found.cAlternateFileName : found.cFileName;
}

int searches = 0;

template <class Char, class Data>
using Find = HANDLE(WINAPI*)(const Char*, Data*);
template <class Char, class Data>
Find<Char, Data> realFind;
template <class Char, class Data>
HANDLE WINAPI countedFind(const Char* path, Data* data) {
    ++searches;
    return realFind<Char, Data>(path, data);
}

// The four unit-test programs of a run (two architectures, two flavours) each try a quarter of their own.
const int testPrograms = 4;
unsigned ownSeed() {
    return 7 + 2 * (sizeof(void*) == 8) + (win32::flavour() == win32::Flavour::ansi);
}

struct Tree : PageFixture {
    std::mt19937 random{ownSeed()};

    Tree() {
        for (const wchar_t* name : folderNames) {
            const std::wstring path = folder.file(name);
            REQUIRE(::CreateDirectoryW(path.c_str(), nullptr));
            fill(path);
        }
        fill(folder.path());
    }
    static void fill(const std::wstring& path) {
        for (const wchar_t* name : fileNames) TempFolder::write(path + L'\\' + name, "x");
    }

    size_t below(size_t limit) { return random() % limit; }

    // The name as it is, its short name, other letters, or something that is not there or reads oddly.
    std::wstring variant(const std::wstring& base, std::wstring name) {
        switch (below(12)) {
            case 0:
            case 1:
            case 2:
                return shortNameOf(base + L'\\' + name);
            case 3:
                for (wchar_t& c : name) c = static_cast<wchar_t>(below(2) ? ::towupper(c) : ::towlower(c));
                return name;
            case 4:
                return name + (below(2) ? L"." : L" ");
            case 5:
                return L"missing" + std::to_wstring(below(9));
            default:
                return name;
        }
    }
    std::wstring separator() {
        const size_t kind = below(20);
        return kind == 0 ? L"/" : kind == 1 ? L"\\\\" : kind == 2 ? L"\\.\\" : L"\\";
    }
    std::wstring path() {
        std::wstring real = folder.path(), path = real;
        if (below(4)) {
            const std::wstring name = folderNames[below(std::size(folderNames))];
            path += separator() + variant(real, name);
            real += L'\\' + name;
        }
        if (below(30) == 0) return path;
        return path + separator() + variant(real, fileNames[below(std::size(fileNames))]);
    }
    // A command as registries hold them, with the path in it as it is, quoted, native or with a variable.
    std::wstring command() {
        const std::wstring file = path();
        switch (below(6)) {
            case 0:
                return file;
            case 1:
                return L"\\??\\" + file;
            case 2:
                return L"\"%oddfolder%" + file.substr(folder.path().size()) + L"\" -x";
            case 3:
                return L"rundll32 " + file + L",Start";
            default:
                return L'"' + file + L"\" -start";
        }
    }
};

// What was asked before: everything of GetLongPathName, the size of a version resource before it is read.
std::wstring asWindowsTells(const std::wstring& name) {
    const std::wstring found = win32::searchPath(name);
    return found.empty() ? name : win32::longPath(found);
}

std::wstring resolvedName(const std::wstring& name) {
    const std::wstring trimmed = win32::trimmed(name), prefix = L"\\??\\";
    return asWindowsTells(trimmed.compare(0, prefix.size(), prefix) ? trimmed
                                                                    : trimmed.substr(prefix.size()));
}

std::wstring fileOfCommand(const std::wstring& command, DWORD type) {
    const std::wstring name = files::GetFileNameFromCommandLine(command), file = resolvedName(name);
    if (name.find(L'%') == std::wstring::npos || win32::fileExists(file) || type != REG_EXPAND_SZ)
        return file;
    const std::wstring expanded = resolvedName(win32::expandEnvironment(name));
    return win32::fileExists(expanded) ? expanded : file;
}

std::wstring descriptionOf(const std::wstring& path) {
    DWORD ignored = 0;
    const DWORD size = win32::isFullPath(path) && win32::fileExists(path)
                           ? ::GetFileVersionInfoSizeW(path.c_str(), &ignored)
                           : 0;
    std::vector<char> block(size);
    void* text = nullptr;
    UINT length = 0;
    if (!size || !::GetFileVersionInfoW(path.c_str(), 0, size, block.data()) ||
        !::VerQueryValueW(block.data(), L"\\StringFileInfo\\040904b0\\FileDescription", &text, &length))
        return {};
    return static_cast<const wchar_t*>(text);
}

}  // namespace

TEST_CASE_FIXTURE(Tree, "each kind of name gets the long path that Windows gives") {
    const std::wstring base = folder.path();
    files::LongPaths paths;
    for (const wchar_t* name : fileNames) {
        for (const std::wstring folderName :
             {L"", L"\\A folder of long name", L"\\two.dots.here", L"\\MIXED.dir"}) {
            const std::wstring path = base + folderName + L'\\' + name;
            CHECK(paths.of(path) == win32::longPath(path));
            const std::wstring shortPath = base + folderName + L'\\' + shortNameOf(path);
            CHECK(paths.of(shortPath) == win32::longPath(shortPath));
            for (auto inLetters : {::towupper, ::towlower}) {
                std::wstring other = path;
                for (size_t i = base.size(); i < path.size(); ++i)
                    other[i] = static_cast<wchar_t>(inLetters(path[i]));
                CHECK(paths.of(other) == win32::longPath(other));
            }
        }
    }
}

// A name that no file has: told as it is when it can only be a long one; looked for once when it may be a
// short one; left to Windows, which has no long path for it, when it is neither for sure.
TEST_CASE_FIXTURE(Tree,
                  "only what may be a short name is looked for, and only what is unsure is left to Windows") {
    const std::wstring base = folder.path() + L"\\short\\";
    files::LongPaths paths;
    paths.of(base + L"plain");
    const ReplacedImport wideCall("FindFirstFileW", &countedFind<wchar_t, WIN32_FIND_DATAW>,
                                  realFind<wchar_t, WIN32_FIND_DATAW>);
    const ReplacedImport ansiCall("FindFirstFileA", &countedFind<char, WIN32_FIND_DATAA>,
                                  realFind<char, WIN32_FIND_DATAA>);
    const auto searchesFor = [&](const std::wstring& name, bool isTold) {
        CAPTURE(name);
        searches = 0;
        CHECK(paths.of(base + name) == (isTold ? base + name : std::wstring()));
        return searches;
    };
    for (const wchar_t* name : {L"NineChars.abc", L"nine~char", L"Absent.four", L"none.a.b", L"NineChars.a+b",
                                L"Nine Chars.abc", L".absent", L"Absent.a..b", L"EightChr.Abc.d"})
        CHECK(searchesFor(name, true) == 0);
    for (const wchar_t* name :
         {L"EightChx.Abx", L"a", L"absent.x", L"_-~$#&()", L"@!'`^{}%.zzz", L"AZaz09.AZ9"})
        CHECK(searchesFor(name, false) == 1);
    for (const wchar_t* name : {L"a+b", L"a b", L".abc", L"a.x=y", L"[a]", L"a,b", L"a;b",
                                L"NineChars\x7F.abc", L"NineChars\x1F.abc", L"NineChars\xFC.abc"})
        CHECK(searchesFor(name, false) == 0);
    for (wchar_t c = 0x20; c < 0x7F; ++c) {
        const bool isSeparator = std::wstring(L"\\/:*?\"<>|. ").find(c) != std::wstring::npos;
        if (isSeparator) continue;
        const bool isShort = (c >= L'0' && c <= L'9') || (c >= L'A' && c <= L'Z') ||
                             (c >= L'a' && c <= L'z') ||
                             std::wstring(L"_-~$#&()@!'`^{}%").find(c) != std::wstring::npos;
        CHECK(searchesFor(std::wstring(L"zz") + c, false) == (isShort ? 1 : 0));
        CHECK(searchesFor(std::wstring(L"LongName") + c, true) == 0);
    }
}

TEST_CASE_FIXTURE(Tree,
                  "a path of the greatest length is Windows' own business, and so is a drive by itself") {
    const std::wstring base = folder.path() + L"\\short\\";
    files::LongPaths paths;
    for (size_t length : {MAX_PATH - 2, MAX_PATH - 1, MAX_PATH, MAX_PATH + 1}) {
        const std::wstring path = base + std::wstring(length - base.size(), L'n');
        CHECK(paths.of(path) == (length < MAX_PATH ? path : std::wstring()));
    }
    CHECK(paths.of(L"C:\\windows") == win32::longPath(L"C:\\windows"));
    CHECK(paths.of(L"C:\\LongName That Is Absent") == L"C:\\LongName That Is Absent");
    CHECK(paths.of(L"C:\\") == win32::longPath(L"C:\\"));
    CHECK(paths.of(L"LongName That Is Absent").empty());
    CHECK(paths.of(L"C:LongName That Is Absent").empty());
    for (const wchar_t* name :
         {L"LongName.Absent/x", L"LongName:Absent", L"LongName*Absent", L"LongName?Absent",
          L"LongName\"Absent", L"LongName<Absent", L"LongName>Absent", L"LongName|Absent",
          L"LongName.Absent.", L"LongName.Absent ", L"\\LongName.Absent", L".\\LongName.Absent",
          L"two \\LongName.Absent"})
        CHECK(paths.of(base + name) != base + name);
}

TEST_CASE_FIXTURE(Tree, "what is not from a drive's root or not plain goes to Windows whole") {
    const std::wstring base = folder.path(), file = base + L"\\Short.TXT";
    const std::wstring rest = base.substr(3);
    for (const std::wstring& path :
         {std::wstring(), std::wstring(L"C:"), std::wstring(L"C:\\"), std::wstring(L"Short.TXT"),
          L"\\\\?\\" + file, L"\\\\.\\" + file, L"\\\\localhost\\c$\\" + rest + L"\\Short.TXT",
          base + L"/Short.TXT", base + L"\\\\Short.TXT", base + L"\\.\\Short.TXT",
          base + L"\\short\\..\\Short.TXT", file + L".", file + L" ", base + L"\\short.",
          base + L"\\short \\Short.TXT", base + L"\\*.TXT", base + L"\\Short?TXT", file + L":stream",
          base + L"\\" + std::wstring(300, L'a')}) {
        CAPTURE(path);
        CHECK(files::LongPaths().of(path) == win32::longPath(path));
    }
}

TEST_CASE_FIXTURE(Tree, "random paths are resolved as before") {
    const int count = 10000 / testPrograms, countForChecker = 100;
    int found = 0, changed = 0;
    for (int i = 0; i < count; i += countForChecker) {
        files::CFileChecker checker;
        for (int k = 0; k < countForChecker; ++k) {
            const std::wstring name = path(), expected = asWindowsTells(win32::trimmed(name));
            const std::wstring result = checker.GetFullFileNameFromShortFilename(name);
            if (result != expected) CHECK_MESSAGE(result == expected, win32::toUtf8(name));
            found += ::GetFileAttributesW(expected.c_str()) != INVALID_FILE_ATTRIBUTES;
            changed += expected != name;
        }
    }
    CHECK(found > count / 2);
    CHECK(changed > count / 10);
}

TEST_CASE_FIXTURE(Tree, "random registries are listed as before") {
    for (const std::wstring subfolder : folderNames) {
        for (const std::wstring name : fileNames) {
            program(folder.file(subfolder + L'\\' + name),
                    {{L"FileDescription", L"About " + subfolder + name}});
        }
    }
    Variable variable(L"oddfolder", folder.path());
    const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
    const wchar_t* const names[] = {L"a", L"b", L"c"};
    helmkit::Logger logger = log.logger();
    int described = 0;
    for (int i = 0; i < 2000 / testPrograms; ++i) {
        std::vector<std::pair<std::wstring, DWORD>> commands;
        for (const wchar_t* name : names) {
            commands.emplace_back(command(), below(2) ? REG_SZ : REG_EXPAND_SZ);
            registry.setString(HKEY_LOCAL_MACHINE, run, name, commands.back().first, commands.back().second);
        }
        size_t at = 0;
        for (const startup::StartupItem& item : startup::ucRun().EnumItems(logger).items()) {
            REQUIRE(at < commands.size());
            CAPTURE(commands[at].first);
            const std::wstring file = fileOfCommand(commands[at].first, commands[at].second);
            const std::wstring description = descriptionOf(file);
            CHECK(item.file() == file);
            CHECK(item.name() == (description.empty() ? names[at] : description));
            described += !description.empty();
            ++at;
        }
        REQUIRE(at == commands.size());
    }
    CHECK(described > 500 / testPrograms);
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Tree, "a file's name is looked at each time") {
    files::LongPaths paths;
    const std::wstring base = folder.path() + L"\\short\\";
    CHECK(paths.of(base + L"PLAIN") == win32::longPath(base) + L"plain");
    REQUIRE(::DeleteFileW((base + L"plain").c_str()));
    TempFolder::write(base + L"PlaiN", "x");
    CHECK(paths.of(base + L"PLAIN") == win32::longPath(base) + L"PlaiN");
}
