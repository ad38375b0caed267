// Ini files that no installer writes: what is found in them, and what is left of them when a place is set
// back.
#include <doctest/doctest.h>

#include "startup/ucOther.h"
#include "tests/support/hostile_ground.h"
#include "win32/base/flavour.h"

namespace {

using namespace std::string_literals;

struct Row {
    const char* what;
    std::string before;
    std::wstring listed;  // of the line "run="; empty when the place is not listed
    std::string after;    // when it was set back
};

std::string utf16(const std::string& text) {
    std::string units = "\xFF\xFE";
    for (char c : text) units += {c, '\0'};
    return units;
}

std::string repeated(const std::string& text, int count) {
    std::string all;
    while (count--) all += text;
    return all;
}

const std::string longLine(70 << 10, 'x');

// No row is for somebody's good: each is what the rules make of the bytes.
const Row rows[] = {
    {"plain", "[windows]\r\nrun=a.exe\r\n", L"a.exe", "[windows]\r\nrun=\r\n"},
    {"no line end at the end", "run=a.exe", L"a.exe", "run=\r\n"},
    {"a byte-order mark", "\xEF\xBB\xBF[windows]\r\nrun=a.exe\r\n", L"a.exe",
     "\xEF\xBB\xBF[windows]\r\nrun=\r\n"},
    {"a byte-order mark before the key", "\xEF\xBB\xBFrun=a.exe\r\n", L"", ""},
    // The file is read byte by byte, whatever it begins with.
    {"UTF-16", utf16("[windows]\r\nrun=a.exe\r\n"), L"", ""},
    {"UTF-16 and a line of bytes", utf16("[windows]\r\n") + "\nrun=a.exe\n", L"a.exe",
     utf16("[windows]").append("\r\n\0\r\n\0\r\nrun=\r\n"s)},
    {"a NUL in the value", "run=a\0b.exe\r\nx=\0\0\r\n"s, L"a\0b.exe"s, "run=\r\nx=\0\0\r\n"s},
    {"a NUL before the key", "\0run=a.exe\r\n"s, L"", ""},
    {"a NUL in the key", "ru\0n=a.exe\r\n"s, L"", ""},
    {"only NULs", std::string(5000, '\0'), L"", ""},
    {"a NUL for a value", "run=\0\r\n"s, L"\0"s, "run=\r\n"},
    {"70 KB for a value", "run=" + longLine + "\r\n", std::wstring(70 << 10, L'x'), "run=\r\n"},
    {"70 KB before it", longLine + "\r\nrun=a.exe\r\n", L"a.exe", longLine + "\r\nrun=\r\n"},
    {"70 KB of blanks", "run=" + std::string(70 << 10, ' ') + "\r\n", L"", ""},
    {"70 KB of blanks around", std::string(70 << 10, ' ') + "run=" + std::string(70 << 10, ' ') + "a.exe",
     L"a.exe", "run=\r\n"},
    {"20,000 lines before it", repeated("x=y\r\n", 20000) + "run=a.exe\r\n", L"a.exe",
     repeated("x=y\r\n", 20000) + "run=\r\n"},
    {"20,000 such lines", repeated("run=a.exe\r\n", 20000), L"a.exe", repeated("run=\r\n", 20000)},
    {"line feeds alone", "a\nrun=a.exe\nb\n", L"a.exe", "a\r\nrun=\r\nb\r\n"},
    {"carriage returns alone", "a\rrun=a.exe\rb\r", L"a.exe", "a\r\nrun=\r\nb\r\n"},
    {"the pair the wrong way round", "a\n\rrun=a.exe\n\rb", L"a.exe", "a\r\nrun=\r\nb\r\n"},
    {"an end-of-file mark before it", "a\r\n\x1A\r\nrun=a.exe\r\n", L"a.exe", "a\r\n\x1A\r\nrun=\r\n"},
    {"an end-of-file mark before the key", "\x1Arun=a.exe\r\n", L"", ""},
    {"another section", "[evil]\r\nrun=a.exe\r\n", L"a.exe", "[evil]\r\nrun=\r\n"},
    {"a comment", ";run=a.exe\r\n", L"", ""},
    {"letters and blanks", "  RuN=  a.exe  \r\n", L"a.exe", "run=\r\n"},
    {"a blank before the equals sign", "run =a.exe\r\n", L"", ""},
    {"a tab before the key", "\trun=a.exe\r\n", L"", ""},
    {"an empty one first", "run=\r\nrun=a.exe\r\nrun=b.exe\r\n", L"a.exe", "run=\r\nrun=\r\nrun=\r\n"},
    {"a longer key", "runs=a.exe\r\nrun=b.exe\r\n", L"b.exe", "runs=a.exe\r\nrun=\r\n"},
    {"a key in the value", "x=run=a.exe\r\n", L"", ""},
    {"a value that is a key", "run=run=a.exe\r\n", L"run=a.exe", "run=\r\n"},
    {"a vertical tab and a form feed for lines", "run=a.exe\x0Brun=b.exe\x0C\r\n", L"a.exe\x0Brun=b.exe\x0C",
     "run=\r\n"},
    {"bytes of the code page", "run=\x80\xE4\xFF.exe\r\n\xE4=\x81\r\n", L"\x20AC\xE4\xFF.exe",
     "run=\r\n\xE4=\x81\r\n"},
};

struct Ini : HostileGround {
    startup::ucOther custom;
    const std::wstring winIni = windows + L"\\win.ini", systemIni = windows + L"\\system.ini";

    Ini() { TempFolder::write(systemIni, "[boot]\r\nshell=neighbour.exe\r\n"); }
    std::vector<startup::StartupItem> items() { return listed(custom); }
};

}  // namespace

TEST_CASE_FIXTURE(Ini, "win.ini as nobody writes it: its line is listed, set back, and all else stays") {
    for (const Row& row : rows) {
        CAPTURE(std::string(row.what));
        TempFolder::write(winIni, row.before);
        const auto found = items();
        const bool isListed = !row.listed.empty();
        REQUIRE(found.size() == (isListed ? 2 : 1));
        CHECK(found.back().place() == 14);
        CHECK(found.back().manufacturer() == L"neighbour.exe");
        if (!isListed) continue;
        CHECK(found[0].place() == 13);
        CHECK(found[0].manufacturer() == row.listed);
        CHECK(custom.deleteItem(found[0], found[0].name(), logger).succeeded);
        CHECK(TempFolder::read(winIni) == row.after);
        REQUIRE(keptFiles().size() == 1);
        CHECK(TempFolder::read(keptFiles()[0]) == row.before);
        removeKept();
        CHECK(items().size() == 1);
    }
    CHECK(log.lines.empty());
}

TEST_CASE_FIXTURE(Ini, "system.ini: the first changed line decides, whatever stands around it") {
    const struct {
        const char* what;
        std::string before;
        std::wstring listed;
        std::string after;
    } shells[] = {
        {"the default first", "shell=Explorer.exe\r\nshell=a.exe\r\nshell=b.exe\r\n", L"a.exe",
         "shell=Explorer.exe\r\nshell=Explorer.exe\r\nshell=Explorer.exe\r\n"},
        {"an empty one", "shell=\0\r\n"s, L"\0"s, "shell=Explorer.exe\r\n"},
        {"70 KB behind it", "shell=a.exe\r\n" + longLine, L"a.exe",
         "shell=Explorer.exe\r\n" + longLine + "\r\n"},
        {"a blank behind the default's name", "shell=explorer.exe\xA0\r\n", L"explorer.exe\xA0",
         "shell=Explorer.exe\r\n"},
    };
    for (const auto& row : shells) {
        CAPTURE(std::string(row.what));
        TempFolder::write(systemIni, row.before);
        const auto found = items();
        REQUIRE(found.size() == 1);
        CHECK(found[0].manufacturer() == row.listed);
        CHECK(found[0].icon() == startup::Icon::exclamation);
        CHECK(custom.deleteItem(found[0], found[0].name(), logger).succeeded);
        CHECK(TempFolder::read(systemIni) == row.after);
        removeKept();
    }
}

TEST_CASE_FIXTURE(Ini, "an ini file that is a folder, locked, or grows while it is shown") {
    REQUIRE(::CreateDirectoryW(winIni.c_str(), nullptr));
    CHECK(items().size() == 1);
    CHECK(log.lines.empty());
    REQUIRE(::RemoveDirectoryW(winIni.c_str()));

    TempFolder::write(winIni, "run=a.exe\r\n");
    {
        win32::OwnedFile lock(
            ::CreateFileW(winIni.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        REQUIRE(lock);
        CHECK(items().size() == 1);
        // Once for each of the file's two places.
        CHECK(log.lines.size() == 2);
        log.lines.clear();
    }
    const auto found = items();
    REQUIRE(found.size() == 2);
    // Somebody adds lines between the refresh and OK: they stay.
    TempFolder::write(winIni, "new=1\r\nrun=b.exe\r\n");
    CHECK(custom.deleteItem(found[0], found[0].name(), logger).succeeded);
    CHECK(TempFolder::read(winIni) == "new=1\r\nrun=\r\n");
    CHECK(TempFolder::read(keptFiles().at(0)) == "new=1\r\nrun=b.exe\r\n");
    removeKept();
    TempFolder::write(winIni, "run=a.exe\r\n");
    {
        win32::OwnedFile lock(
            ::CreateFileW(winIni.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
        CHECK_THROWS_AS(custom.deleteItem(found[0], found[0].name(), logger), win32::Error);
    }
    CHECK(TempFolder::read(winIni) == "run=a.exe\r\n");
    CHECK(keptFiles().empty());
}
