#include <doctest/doctest.h>

#include <codecvt>
#include <fstream>
#include <locale>
#include <string>

#include "files/command_line.h"

using files::GetFileNameFromCommandLine;

namespace {

std::wstring wide(const std::string& utf8) {
    std::wstring_convert<std::codecvt_utf8<wchar_t>> converter;
    return converter.from_bytes(utf8);
}

struct Case {
    const wchar_t* command;
    const wchar_t* file;
};

void check(const Case& row) {
    CHECK(GetFileNameFromCommandLine(row.command) == row.file);
}

}  // namespace

TEST_CASE("rundll32 commands give the library") {
    for (const Case& row : {
             Case{L"rundll32 shell32,Control_RunDLL \"sysdm.cpl\"", L"shell32.dll"},
             {L"RUNDLL32.EXE C:\\x\\y.dll,Start", L"C:\\x\\y.dll"},
             {L"rundll32", L"rundll32.exe"},
             {L"rundll32.exe", L"rundll32.exe"},
             {L"\"RunDll32.exe\" mydll.dll,Entry", L"mydll.dll"},
             {L"%SystemRoot%\\System32\\rundll32 x,y", L"x.dll"},
             {L"%SystemRoot%\\System32\\rundll32.exe x.cpl,y z", L"x.cpl"},
             {L"rundll32 foo", L"foo.dll"},
             {L"rundll32  foo bar ", L"foo bar.dll"},
             // The comma stands before the blank, so that all after the blank is taken.
             {L"rundll32,x foo", L"foo.dll"},
             // Quotes and switches stay: none of the rules for other commands is applied.
             {L"rundll32 \"C:\\a b\\c.dll\",Start", L"\"C:\\a b\\c.dll\""},
             {L"rundll32 c.dll /x", L"c.dll /x"},
             {L"rundll32 ,x", L".dll"},
             {L"rundll32 ", L".dll"},
             // Recognised by its first eight characters alone.
             {L"rundll32foo a,b", L"a.dll"},
         }) {
        check(row);
    }
}

TEST_CASE("a full path to rundll32 is an ordinary program") {
    check({L"C:\\WINDOWS\\system32\\rundll32.exe a.dll,Start", L"C:\\WINDOWS\\system32\\rundll32.exe"});
    check({L"rundll3", L"rundll3"});
    check({L"%windir%\\system32\\rundll32 a,b", L"%windir%\\system32\\rundll32.exe"});
}

TEST_CASE("everything from the first slash on is cut, also inside a path") {
    check({L"\"C:\\Program Files\\A\\a.exe\" /start", L"C:\\Program Files\\A\\a.exe"});
    check({L"C:\\a/b\\c.exe", L"C:\\a.exe"});
    check({L"/x", L""});
    check({L"cleanmgr /sagerun:65535", L"cleanmgr"});
}

TEST_CASE("quoted programs") {
    check({L"\"C:\\Program Files\\A\\a.exe\" -x", L"C:\\Program Files\\A\\a.exe"});
    check({L"\"C:\\a b\\c.exe", L"C:\\a.exe"});
    check({L"\" a\" b", L"a"});
    check({L"\"C:\\x\\y.exe\"", L"C:\\x\\y.exe"});
    check({L"\"\" x", L""});
    check({L"\"", L""});
    check({L"\"/x", L""});
    check({L"\"\"", L""});
}

TEST_CASE("unquoted programs end at the first blank after the last backslash, or at the last blank") {
    check({L"C:\\Program Files\\App\\app.exe -min", L"C:\\Program Files\\App\\app.exe"});
    check({L"C:\\Program Files\\App\\app.exe", L"C:\\Program Files\\App\\app.exe"});
    check({L"app.exe -a -b", L"app.exe -a"});
    check({L"app.exe -a", L"app.exe"});
    check({L" app", L""});
    check({L"C:\\a.exe -f C:\\b.txt -x", L"C:\\a.exe -f C:\\b.txt"});
}

TEST_CASE("placeholders are removed from the third character on") {
    check({L"C:\\PROGRA~1\\A\\a.exe \"%1\" -x", L"C:\\PROGRA~1\\A\\a.exe"});
    check({L"C:\\a.exe %1", L"C:\\a.exe"});
    check({L"%1 a", L"%1"});
    check({L"x%1 %1a", L"x%1"});
    check({L"xy%1 a", L"xy"});
    // Removed once: what the removal brings together is not looked at again.
    check({L"C:\\a %%11b", L"C:\\a.exe"});
    check({L"a b%%11 c", L"a b%1"});
}

TEST_CASE(".exe is put after a path whose last four characters hold no point") {
    check({L"C:\\WINDOWS\\system32\\foo", L"C:\\WINDOWS\\system32\\foo.exe"});
    check({L"foo", L"foo"});
    check({L"explorer", L"explorer"});
    check({L"C:\\x\\name.html", L"C:\\x\\name.html.exe"});
    check({L"C:\\x\\a.htm", L"C:\\x\\a.htm"});
    check({L"C:\\x\\a.h", L"C:\\x\\a.h"});
    check({L"\\", L"\\.exe"});
    check({L"", L""});
    check({L"   ", L""});
}

TEST_CASE("real commands give the files that the rules take from them") {
    std::ifstream rows(QUILLON_COMMANDS);
    REQUIRE(rows);
    int count = 0, withCommand = 0;
    for (std::string line; std::getline(rows, line);) {
        if (line.rfind('#', 0) == 0) continue;
        size_t tab = line.find('\t');
        REQUIRE(tab != std::string::npos);
        CHECK_MESSAGE(GetFileNameFromCommandLine(wide(line.substr(0, tab))) == wide(line.substr(tab + 1)),
                      line);
        ++count;
        withCommand += tab > 0;
    }
    CHECK(count == 187);
    CHECK(withCommand == 185);
}
