// Names that stand in a file, which anybody may have written.
#include <doctest/doctest.h>

#include "tests/support/program_image.h"
#include "tests/support/replaced_import.h"
#include "tests/support/scripted_desktop.h"
#include "tests/support/temp_folder.h"
#include "tests/support/text.h"
#include "win32/base/handle.h"
#include "win32/base/text.h"
#include "win32/files/indirect_string.h"
#include "win32/system/environment.h"

namespace {

// The system folder, while a test has one of its own.
std::wstring systemFolder;

UINT WINAPI systemDirectoryW(wchar_t* path, UINT room) {
    systemFolder.copy(path, room);
    return static_cast<UINT>(systemFolder.size());
}
UINT WINAPI systemDirectoryA(char* path, UINT room) {
    const std::string folder = win32::toAnsi(systemFolder);
    folder.copy(path, room);
    return static_cast<UINT>(folder.size());
}

struct Names {
    TempFolder folder;
    ScriptedDesktop desktop;
    std::wstring file = folder.file(L"names.dll");

    Names() { desktop.windowsVersion = 0x0A; }
    void give(const std::string& block) { TempFolder::write(file, ProgramImage({{7, 0x0409, block}}).bytes); }
    std::wstring shown(int number = 100) {
        return win32::displayedText(L"@" + file + L",-" + std::to_wstring(number));
    }
    std::wstring raw(int number = 100) const { return L"@" + file + L",-" + std::to_wstring(number); }
};

const std::wstring fourth = L"Name of the service \x416";

}  // namespace

TEST_CASE_FIXTURE(Names, "a name is read from the file, where it has one") {
    give(blockBytes({L"", L"", L"", L"", fourth}));
    CHECK(shown() == fourth);
    CHECK(shown(99) == raw(99));
    CHECK(shown(101) == raw(101));
    desktop.windowsVersion = ScriptedDesktop::windowsXp;
    CHECK(shown() == raw());
}

TEST_CASE_FIXTURE(Names, "only a whole reference is read as one, from Vista on") {
    TempFolder::write(file, ProgramImage({{1, 0x0409, blockBytes({L"", L"one"})},
                                          {4096, 0x0409, blockBytes(std::vector<std::wstring>(16, L"last"))}})
                                .bytes);
    CHECK(shown(1) == L"one");
    CHECK(shown(65535) == L"last");
    for (const std::wstring& text :
         {L"@" + file, L"@" + file + L",-", L"@" + file + L",1", file + L",-1", L"@" + file + L",-1x",
          L"@" + file + L",-/", L"@" + file + L",-1:", raw(65536), raw(65537), L"@" + file + L",-4294967297",
          std::wstring(), std::wstring(L"@"), std::wstring(L",-1")})
        CHECK(win32::displayedText(text) == text);
    CHECK(win32::displayedText(L"@" + file + L",-01") == L"one");
    CHECK(win32::displayedText(L"@" + file + L",-2,-1") == L"@" + file + L",-2,-1");
    for (const auto& [version, isRead] : {std::pair(0x0005, false), {0x0006, true}, {0x0106, true}}) {
        desktop.windowsVersion = version;
        CHECK((shown(1) == L"one") == isRead);
    }
    desktop.windowsVersion = 0x80000006;
    CHECK(shown(1) == raw(1));
}

TEST_CASE_FIXTURE(Names, "a file is named with references to the environment, or bare in the system folder") {
    give(blockBytes({L"", L"", L"", L"", fourth}));
    win32::setEnvironmentVariable(L"QuillonNames", folder.path());
    const std::wstring named = L"@%QuillonNames%\\names.dll,-100", bare = L"@names.dll,-100";
    CHECK(win32::displayedText(named) == fourth);
    CHECK(win32::displayedText(bare) == bare);
    systemFolder = folder.path();
    {
        const ReplacedImport wideCall("GetSystemDirectoryW", &systemDirectoryW);
        const ReplacedImport ansiCall("GetSystemDirectoryA", &systemDirectoryA);
        CHECK(win32::displayedText(bare) == fourth);
        CHECK(win32::displayedText(L"@other.dll,-100") == L"@other.dll,-100");
    }
    win32::setEnvironmentVariable(L"QuillonNames", {});
    CHECK(win32::displayedText(named) == named);
}

TEST_CASE_FIXTURE(Names, "a name is read from the file of strings beside it, where it has none itself") {
    TempFolder::write(file, ProgramImage({}).bytes);
    CHECK(shown() == raw());
    REQUIRE(::CreateDirectoryW(folder.file(L"en-US").c_str(), nullptr));
    TempFolder::write(folder.file(L"en-US\\names.dll.mui"),
                      ProgramImage({{7, 0x0409, blockBytes({L"", L"", L"", L"", fourth})}}).bytes);
    CHECK(shown() == fourth);
}

TEST_CASE_FIXTURE(Names, "lengths that lead out of the strings show the raw text") {
    for (const std::string& block : {std::string("\xFF\xFF", 2), std::string(8, '\xFF'), std::string(),
                                     std::string("\0\0\0\0\0\0\0\0\xFF\x7F", 10)}) {
        give(block);
        CHECK(shown() == raw());
    }
    TempFolder::write(file, std::string(100000, 'M'));
    CHECK(shown() == raw());
}

TEST_CASE_FIXTURE(Names, "a file that may not be read shows the raw text") {
    give(blockBytes({L"", L"", L"", L"", fourth}));
    CHECK(shown() == fourth);
    const win32::OwnedFile locked(
        ::CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    REQUIRE(locked);
    CHECK(shown() == raw());
}
