// Commands that no installer writes. Each file was worked out by hand from the rules: what is absurd here is
// what they demand.
#include <doctest/doctest.h>

#include <initializer_list>
#include <string>

#include "files/command_line.h"

namespace {

struct Case {
    const wchar_t* command;
    const wchar_t* file;
};

void check(std::initializer_list<Case> rows) {
    for (const Case& row : rows) {
        const std::wstring command = row.command;
        CAPTURE(std::string(command.begin(), command.end()));
        CHECK(files::GetFileNameFromCommandLine(command) == row.file);
    }
}

// Commands that are their own file.
void checkUnchanged(std::initializer_list<const wchar_t*> commands) {
    for (const wchar_t* command : commands) check({{command, command}});
}

}  // namespace

TEST_CASE("hostile commands: servers") {
    checkUnchanged({LR"(\\server\share\app.exe)", LR"(\\10.0.0.1\c$\app.exe)",
                    LR"(\\server@80\DavWWWRoot\app.exe)",
                    // Nothing behind the last backslash ends it.
                    LR"(\\server\share\app.exe \\other\share\file.txt)"});
    check({
        {LR"(\\server\share\app.exe -x)", LR"(\\server\share\app.exe)"},
        {LR"(\\server\share\my app\app.exe -x)", LR"(\\server\share\my app\app.exe)"},
        {LR"("\\server\share\my app\app.exe" -x)", LR"(\\server\share\my app\app.exe)"},
        {LR"(\\server\share\app)", LR"(\\server\share\app.exe)"},
        {LR"(\\server\share)", LR"(\\server\share.exe)"},
        {LR"(\\server)", LR"(\\server.exe)"},
        {LR"(\\)", LR"(\\.exe)"},
        {LR"(\\server\share\app.exe /s)", LR"(\\server\share\app.exe)"},
        {LR"(//server/share/app.exe)", L""},
        {LR"(\/server\share\app.exe)", LR"(\.exe)"},
        {LR"(\\10.0.0.1\c$)", LR"(\\10.0.0.1\c$.exe)"},
        {LR"(\\192.0.2.1\dead share\app.exe -x)", LR"(\\192.0.2.1\dead share\app.exe)"},
        {LR"(\\server@SSL@443\DavWWWRoot\a b\app.exe -x)", LR"(\\server@SSL@443\DavWWWRoot\a b\app.exe)"},
        {LR"(\\server\pipe\name)", LR"(\\server\pipe\name.exe)"},
        {LR"(\\server\share\app.exe \\other\share\file.txt -x)",
         LR"(\\server\share\app.exe \\other\share\file.txt)"},
        {LR"(\\server\share\app.exe "\\other\share\file.txt")",
         LR"(\\server\share\app.exe "\\other\share\file.txt".exe)"},
        {LR"(\\?\UNC\server\share\app.exe -x)", LR"(\\?\UNC\server\share\app.exe)"},
    });
}

TEST_CASE("hostile commands: prefixes of devices and of the object manager") {
    checkUnchanged({LR"(\\?\C:\a\app.exe)", LR"(\\.\C:\a\app.exe)",
                    LR"(\\.\GLOBALROOT\Device\HarddiskVolume1\app.exe)",
                    LR"(\\?\Volume{0f0f0f0f-0000-0000-0000-100000000000}\app.exe)",
                    LR"(\??\C:\WINDOWS\system32\drivers\x.sys)", LR"(\??\UNC\server\share\x.sys)",
                    LR"(\Device\HarddiskVolume1\x.sys)", LR"(\DosDevices\C:\x.sys)",
                    LR"(\SystemRoot\System32\drivers\x.sys)",
                    // The point among the last four characters counts wherever it stands.
                    LR"(\\.\)", LR"(\\.\C:)", L"NUL", L"NUL.exe", L"COM1:", LR"(C:\aux.txt)"});
    check({
        {LR"(\\?\C:\a b\app.exe -x)", LR"(\\?\C:\a b\app.exe)"},
        {LR"("\\?\C:\a b\app.exe" -x)", LR"(\\?\C:\a b\app.exe)"},
        {LR"(\\.\PhysicalDrive0)", LR"(\\.\PhysicalDrive0.exe)"},
        {LR"(\\.\pipe\evil)", LR"(\\.\pipe\evil.exe)"},
        {LR"(\\?\GLOBALROOT\Device\HarddiskVolumeShadowCopy1\a.exe -k)",
         LR"(\\?\GLOBALROOT\Device\HarddiskVolumeShadowCopy1\a.exe)"},
        {LR"(\??\C:\WINDOWS\system32\x.exe -k netsvcs)", LR"(\??\C:\WINDOWS\system32\x.exe)"},
        {LR"("\??\C:\a b\x.exe" -k)", LR"(\??\C:\a b\x.exe)"},
        {LR"(\systemroot\x)", LR"(\systemroot\x.exe)"},
        {LR"(\??\)", LR"(\??\.exe)"},
        {LR"(\\?\)", LR"(\\?\.exe)"},
        {LR"(\\.\NUL)", LR"(\\.\NUL.exe)"},
        {LR"(C:\NUL)", LR"(C:\NUL.exe)"},
        {LR"(C:\a\CON.exe -x)", LR"(C:\a\CON.exe)"},
        {LR"(\\?\C:\a/b.exe)", LR"(\\?\C:\a.exe)"},
        {LR"(Registry::HKLM\x)", LR"(Registry::HKLM\x.exe)"},
    });
}

TEST_CASE("hostile commands: streams") {
    checkUnchanged({LR"(C:\a\file.txt:evil.exe)", LR"(C:\a::$INDEX_ALLOCATION\evil.exe)", L"f.txt:x.exe"});
    check({
        {LR"(C:\a\file.txt:evil)", LR"(C:\a\file.txt:evil.exe)"},
        {LR"(C:\a\file.txt:evil.exe:$DATA)", LR"(C:\a\file.txt:evil.exe:$DATA.exe)"},
        {LR"(C:\a\file.txt:evil.exe -x)", LR"(C:\a\file.txt:evil.exe)"},
        {LR"("C:\a b\f:x.exe" -x)", LR"(C:\a b\f:x.exe)"},
        {L"f.txt:x y.exe", L"f.txt:x"},
        {LR"(C:\a\f.txt:x y.exe)", LR"(C:\a\f.txt:x.exe)"},
        {LR"(C:\a:b)", LR"(C:\a:b.exe)"},
        {LR"(rundll32 C:\a\f.txt:x.dll,Start)", LR"(C:\a\f.txt:x.dll)"},
        {LR"(rundll32 C:\a\f:x,Start)", LR"(C:\a\f:x.dll)"},
    });
}

TEST_CASE("hostile commands: relative paths, folders and points") {
    checkUnchanged({L"C:app.exe", L"C:app", L"C:", LR"(\app.exe)", LR"(.\app.exe)", L"..", L".", LR"(..\..)",
                    LR"(..\)", LR"(C:\a\..\b\app.exe)", LR"(C:\a\.)", LR"(C:\a\app.)", LR"(C:\a\app.exe.)",
                    LR"(C:\a\app.exe..)", LR"(C:\a.b\)", LR"(C:\a.b\c)", LR"(C:\a\x.e)", LR"(C:\a\.exe)",
                    LR"(C:\a\ctfmon.exe\..\evil.exe)"});
    check({
        {L"C:app.exe -x", L"C:app.exe"},
        {L"C:app.exe -x -y", L"C:app.exe -x"},
        {LR"(C:a\app.exe -x)", LR"(C:a\app.exe)"},
        {LR"(C:\)", LR"(C:\.exe)"},
        {LR"(\a b\app.exe -x)", LR"(\a b\app.exe)"},
        {LR"(..\app.exe -x)", LR"(..\app.exe)"},
        {LR"(C:\a\.\app)", LR"(C:\a\.\app.exe)"},
        {LR"(C:\a\app. -x)", LR"(C:\a\app.)"},
        {LR"(C:\Program Files)", LR"(C:\Program.exe)"},
        {LR"(C:\Program Files\)", LR"(C:\Program Files\.exe)"},
        {LR"("C:\Program Files\")", LR"(C:\Program Files\.exe)"},
        {LR"(C:\WINDOWS\)", LR"(C:\WINDOWS\.exe)"},
        {LR"(C:\WINDOWS)", LR"(C:\WINDOWS.exe)"},
        {LR"(C:\a.b\cd)", LR"(C:\a.b\cd.exe)"},
        {LR"(C:\a.bc\d)", LR"(C:\a.bc\d.exe)"},
        {LR"(C:\a\x.exe2)", LR"(C:\a\x.exe2.exe)"},
        {LR"(C:\a\x.jpeg)", LR"(C:\a\x.jpeg.exe)"},
        {LR"(x.exe\)", LR"(x.exe\.exe)"},
    });
}

TEST_CASE("hostile commands: rundll32") {
    check({
        {L"rundll32.exe shell32.dll,Control_RunDLL", L"shell32.dll"},
        {LR"(RunDLL32 "C:\a b\c.dll",Start x)", LR"("C:\a b\c.dll")"},
        {LR"(rundll32.exe C:\a b\c.dll,Start)", LR"(C:\a b\c.dll)"},
        {L"rundll32.exe  c.dll,Start", L"c.dll"},
        {L"rundll32.exe c.dll , Start", L"c.dll"},
        {L"rundll32.exe c.dll,#1", L"c.dll"},
        {L"rundll32.exe c.dll Start", L"c.dll Start"},
        {L"rundll32.exe /d c.dll,Start", L"/d c.dll"},
        {L"rundll32.exe -sta {0f0f}", L"-sta {0f0f}.dll"},
        {LR"(rundll32.exe javascript:"\..\mshtml,RunHTMLApplication ";x)", LR"(javascript:"\..\mshtml)"},
        {LR"(rundll32.exe \\server\share\c.dll,Start)", LR"(\\server\share\c.dll)"},
        {LR"(rundll32.exe \\server@80\share\c,Start)", LR"(\\server@80\share\c.dll)"},
        // A point in a folder's name keeps the extension off.
        {LR"(rundll32.exe C:\a.b\c,Start)", LR"(C:\a.b\c)"},
        {LR"(rundll32.exe "C:\a b\c",Start)", LR"("C:\a b\c".dll)"},
        // Only a blank ends the program.
        {L"rundll32.exe\tc.dll,Start", L"rundll32.exe"},
        {LR"("rundll32.exe")", L"rundll32.exe"},
        {LR"("rundll32.exe" "c.dll",Start)", LR"("c.dll")"},
        {LR"("rundll32" c.dll,Start)", L"rundll32"},
        {LR"(%SystemRoot%\system32\rundll32.exe c.dll,Start)", L"c.dll"},
        {LR"(%SYSTEMROOT%\SYSTEM32\RUNDLL32.EXE C:\a\b.dll)", LR"(C:\a\b.dll)"},
        {LR"("%SystemRoot%\system32\rundll32.exe" c.dll,Start)", LR"(%SystemRoot%\system32\rundll32.exe)"},
        {LR"(C:\WINDOWS\system32\rundll32.exe "C:\a b\c.dll",Start)",
         LR"(C:\WINDOWS\system32\rundll32.exe "C:\a b\c.dll",Start.exe)"},
        {LR"(C:\WINDOWS\system32\rundll32.exe C:\a\c.dll,Start x)",
         LR"(C:\WINDOWS\system32\rundll32.exe C:\a\c.dll,Start.exe)"},
        {L" rundll32 c.dll,Start", L"rundll32"},
        {L"rundll32;c.dll", L"rundll32.exe"},
        {LR"(rundll32\..\evil.exe -x)", L"-x.dll"},
        {L"rundll32_evil.exe", L"rundll32.exe"},
    });
}

TEST_CASE("hostile commands: other programs that start what is told them") {
    checkUnchanged({LR"(wscript.exe C:\a\x.vbs)", LR"(explorer.exe C:\a\x.exe)",
                    LR"(explorer.exe,C:\a\x.exe)", LR"(control.exe C:\a\x.cpl)", LR"(java -jar C:\a b\x.jar)",
                    L"userinit.exe,evil.exe"});
    check({
        {LR"(C:\WINDOWS\system32\svchost.exe -k netsvcs)", LR"(C:\WINDOWS\system32\svchost.exe)"},
        {LR"(%SystemRoot%\System32\svchost.exe -k LocalService -p)", LR"(%SystemRoot%\System32\svchost.exe)"},
        {L"svchost.exe -k netsvcs", L"svchost.exe -k"},
        {L"svchost -k rpcss -p -s RpcSs", L"svchost -k rpcss -p -s"},
        {LR"(wscript.exe "C:\a b\x.vbs")", LR"(wscript.exe "C:\a b\x.vbs".exe)"},
        {L"wscript.exe //B x.vbs", L"wscript.exe"},
        {LR"(C:\WINDOWS\system32\wscript.exe //E:jscript C:\a\x.txt)", LR"(C:\WINDOWS\system32\wscript.exe)"},
        {LR"(cscript C:\a\x.js -v)", LR"(cscript C:\a\x.js)"},
        {L"mshta http://evil.example/x.hta", L"mshta"},
        {LR"(mshta.exe vbscript:Execute("x")(window.close))", L"mshta.exe"},
        {LR"(mshta javascript:a=new ActiveXObject("WScript.Shell");a.Run("calc"))",
         L"mshta javascript:a=new"},
        {L"cmd /c evil.exe", L"cmd"},
        {LR"(cmd.exe /c start "" "C:\a b\x.exe")", L"cmd.exe"},
        {L"%COMSPEC% /c x", L"%COMSPEC%"},
        {LR"(C:\WINDOWS\system32\cmd.exe /c x)", LR"(C:\WINDOWS\system32\cmd.exe)"},
        {LR"("C:\WINDOWS\system32\cmd.exe" /c "C:\a\x.exe")", LR"(C:\WINDOWS\system32\cmd.exe)"},
        {L"powershell -nop -w hidden -enc AAAA", L"powershell -nop -w hidden -enc"},
        {LR"(powershell.exe -file C:\a\x.ps1 -q)", LR"(powershell.exe -file C:\a\x.ps1)"},
        {LR"(regsvr32 /s C:\a\x.dll)", L"regsvr32"},
        {LR"(regsvr32.exe -s -i:C:\a b\x.sct scrobj.dll)", LR"(regsvr32.exe -s -i:C:\a b\x.sct)"},
        {LR"(msiexec /i C:\a\x.msi)", L"msiexec"},
        {LR"(msiexec.exe -i C:\a\x.msi -q)", LR"(msiexec.exe -i C:\a\x.msi)"},
        {LR"(explorer C:\a)", LR"(explorer C:\a.exe)"},
        {LR"(forfiles /p C:\ /c evil)", L"forfiles"},
        {LR"(C:\WINDOWS\system32\control.exe x.cpl,,1)", LR"(C:\WINDOWS\system32\control.exe)"},
        {LR"("C:\a b\java.exe" -jar "C:\c d\x.jar")", LR"(C:\a b\java.exe)"},
        {LR"(hh.exe mk:@MSITStore:C:\a\x.chm::/x.htm)", LR"(hh.exe mk:@MSITStore:C:\a\x.chm::.exe)"},
    });
}

TEST_CASE("hostile commands: quotes") {
    checkUnchanged({L"\"x", L"x\"", LR"("C:\a\x.exe)"});
    check({
        {LR"(""C:\a\x.exe"")", LR"("C:\a\x.exe".exe)"},
        {LR"(""C:\a b\x.exe"" -x)", L""},
        {LR"("C:\a\x.exe"-x)", LR"("C:\a\x.exe"-x.exe)"},
        {LR"("C:\a\x.exe" "-x")", LR"(C:\a\x.exe)"},
        {LR"('C:\a b\x.exe' -x)", LR"('C:\a b\x.exe'.exe)"},
        {LR"(C:\"a b"\x.exe -x)", LR"(C:\"a b"\x.exe)"},
        {LR"(C:\a b\"x.exe" -x)", LR"(C:\a b\"x.exe".exe)"},
        {L"\"x y", L"x"},
        {L"\" x", L""},
        {L"\"a\"b\"c d", L"a"},
        {LR"("C:\a b\x" -y)", LR"(C:\a b\x.exe)"},
        // The slash is looked for before the quotes.
        {LR"("C:\a b\x.exe /y" z)", LR"(C:\a.exe)"},
        {L"\"\"\"", L"\""},
        {L"\"\" \"\"", L""},
        {LR"("%ProgramFiles%\a b\x.exe" -x)", LR"(%ProgramFiles%\a b\x.exe)"},
        {LR"(C:\a\x.exe")", LR"(C:\a\x.exe".exe)"},
        {LR"( "C:\a b\x.exe" -y)", LR"(C:\a b\x.exe)"},
    });
}

TEST_CASE("hostile commands: slashes, placeholders, separators and white space") {
    checkUnchanged({LR"(C:\a\x%1.exe)", LR"(ab"%1")", L"C:\\a\\x.exe\r\nC:\\b\\y.exe", LR"(@C:\a\x.exe)",
                    LR"(C:\a\x.exe;C:\b\y.exe)", LR"(C:\a\x.exe|C:\b\y.exe)", LR"(C:\a\x.exe & C:\b\y.exe)",
                    LR"(C:\a\x.exe > C:\b.txt)", LR"(C:\Program.exe Files\x.exe)",
                    LR"(C:\a\x.exe -f:C:\b c\d.txt)"});
    check({
        {LR"(C:\a\x.exe/s)", LR"(C:\a\x.exe)"},
        {L"C:/a/x.exe", L"C:"},
        {LR"(C:\a b/c\x.exe)", LR"(C:\a.exe)"},
        {L"http://evil.example", L"http:"},
        {L"file:///C:/x.exe", L"file:"},
        {L"ctfmon.exe/../../evil.exe", L"ctfmon.exe"},
        {L"ms-settings:x y", L"ms-settings:x"},
        {LR"(C:\a\x.exe "%1" %*)", LR"(C:\a\x.exe)"},
        {LR"(C:\a\x"%1".exe -y)", LR"(C:\a\x.exe)"},
        {LR"(C:\a\x%1.exe -y)", LR"(C:\a\x.exe)"},
        {LR"("%1" x)", L"%1"},
        {L"%1%1 x", L"%1"},
        {LR"(a "%1")", L"a"},
        {L"C:\\a\\x.exe%1 ", LR"(C:\a\x.exe)"},
        {LR"(  C:\a\x.exe)", LR"(C:\a\x.exe)"},
        {LR"(  C:\a\x.exe -y)", LR"(C:\a\x.exe)"},
        {L"C:\\a\\x.exe ", LR"(C:\a\x.exe)"},
        {LR"(C:\a\x.exe   -y)", LR"(C:\a\x.exe)"},
        {L"C:\\a\\x.exe\t-y", L"C:\\a\\x.exe\t-y.exe"},
        {L"\tC:\\a\\x.exe -y", L"\tC:\\a\\x.exe"},
        {L"C:\\a\\x.exe\xA0-y", L"C:\\a\\x.exe\xA0-y.exe"},
        {L"C:\\a\\x.exe\x3000-y", L"C:\\a\\x.exe\x3000-y.exe"},
        {L"C:\\a\\x\x202Egpj.exe -y", L"C:\\a\\x\x202Egpj.exe"},
        {LR"(C:\Program Files\Common Files\x)", LR"(C:\Program Files\Common Files\x.exe)"},
    });
}

TEST_CASE("hostile commands: as long as the registry lets them be") {
    for (size_t length : {299u, 300u, 2001u, 32766u, 32767u, 32768u, 1000000u}) {
        CAPTURE(length);
        const std::wstring a(length, L'a'), path = L"C:\\" + a, program = path + L".exe";
        auto file = [](const std::wstring& command) { return files::GetFileNameFromCommandLine(command); };
        CHECK(file(program) == program);
        CHECK(file(path) == program);
        CHECK(file(program + L" -x") == program);
        CHECK(file(L"C:\\x.exe " + a) == L"C:\\x.exe");
        CHECK(file(L"x.exe " + a) == L"x.exe");
        CHECK(file(L'"' + program + L"\" -x") == program);
        CHECK(file(L"\"C:\\x.exe" + a + L" y") == L"C:\\x.exe" + a + L".exe");
        CHECK(file(L"rundll32 " + a + L",Start") == a + L".dll");
        CHECK(file(L"rundll32.exe" + a) == L"rundll32.exe");
        CHECK(file(L"C:\\x.exe /" + a) == L"C:\\x.exe");
        CHECK(file(std::wstring(length, L'\\')) == std::wstring(length, L'\\') + L".exe");
        CHECK(file(std::wstring(length, L' ')).empty());
        CHECK(file(std::wstring(length, L'/')).empty());
        CHECK(file(std::wstring(length, L'"')) == std::wstring(length - 2, L'"'));
    }
}

TEST_CASE("hostile commands: what is removed or looked for again and again takes linear time") {
    std::wstring placeholders = L"C:\\x.exe ", expected;
    for (int i = 0; i < 200000; ++i) placeholders += L"\"%1\" %1 ";
    CHECK(files::GetFileNameFromCommandLine(placeholders) == L"C:\\x.exe");
    std::wstring halves = L"ab";
    for (int i = 0; i < 200000; ++i) halves += L"%%11";
    // Removed once: what the removal brings together is not looked at again.
    CHECK(files::GetFileNameFromCommandLine(halves + L" x").size() == 2 + 2 * 200000);
}
