#include <doctest/doctest.h>

#include "tests/support/page_fixture.h"
#include "win32/registry/trusted_environment.h"
#include "win32/system/system.h"

namespace {

const std::wstring currentVersion = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion";

// The variables as a plain user may have planted them.
struct Planted {
    RegistryFixture registry;
    ScriptedDesktop desktop;
    Variable windir{L"windir", L"C:\\planted"}, systemRoot{L"SystemRoot", L"C:\\planted"},
        systemDrive{L"SystemDrive", L"P:"}, programs{L"ProgramFiles", L"C:\\planted\\programs"},
        common{L"CommonProgramFiles", L"C:\\planted\\common"}, w6432{L"ProgramW6432", L"C:\\planted\\w6432"},
        commonW6432{L"CommonProgramW6432", L"C:\\planted\\common w6432"};

    void store(const wchar_t* name, const std::wstring& text, DWORD type = REG_SZ) {
        registry.setString(HKEY_LOCAL_MACHINE, currentVersion, name, text, type);
    }
};

std::wstring value(const wchar_t* variable) {
    return win32::environmentVariable(variable);
}

std::wstring realWindows() {
    wchar_t folder[MAX_PATH] = L"";
    ::GetWindowsDirectoryW(folder, MAX_PATH);
    return folder;
}

}  // namespace

TEST_CASE_FIXTURE(Planted, "the system tells where Windows and the programs are, no variable does") {
    store(L"ProgramFilesDir", L"D:\\Programs");
    store(L"CommonFilesDir", L"D:\\Programs\\Common");
    win32::setTrustedEnvironment();
    CHECK(value(L"windir") == realWindows());
    CHECK(value(L"SystemRoot") == realWindows());
    CHECK(value(L"SystemDrive") == realWindows().substr(0, 2));
    CHECK(value(L"ProgramFiles") == L"D:\\Programs");
    CHECK(value(L"CommonProgramFiles") == L"D:\\Programs\\Common");
}

TEST_CASE_FIXTURE(
    Planted, "the registry's other values serve where the first are missing, else there is no variable") {
    store(L"ProgramW6432Dir", L"D:\\Other");
    win32::setTrustedEnvironment();
    CHECK(value(L"ProgramFiles") == L"D:\\Other");
    CHECK(value(L"CommonProgramFiles") == L"");
}

TEST_CASE_FIXTURE(Planted, "the first of two values is the one that counts, as far as its first NUL") {
    store(L"ProgramFilesDir", std::wstring(L"D:\\Programs\0x", 13));
    store(L"ProgramW6432Dir", L"D:\\Other");
    store(L"CommonW6432Dir", L"D:\\Common");
    win32::setTrustedEnvironment();
    CHECK(value(L"ProgramFiles") == L"D:\\Programs");
    CHECK(value(L"CommonProgramFiles") == L"D:\\Common");
    store(L"CommonFilesDir", L"D:\\First");
    win32::setTrustedEnvironment();
    CHECK(value(L"CommonProgramFiles") == L"D:\\First");
}

TEST_CASE_FIXTURE(Planted, "a stored reference to a variable is not followed") {
    store(L"ProgramFilesDir", L"%ProgramW6432%", REG_EXPAND_SZ);
    registry.setNumber(HKEY_LOCAL_MACHINE, currentVersion, L"CommonFilesDir", 5);
    win32::setTrustedEnvironment();
    CHECK(value(L"ProgramFiles") == L"");
    CHECK(value(L"CommonProgramFiles") == L"");
}

TEST_CASE_FIXTURE(Planted, "Windows 98 has three of the variables, and the others are left alone") {
    desktop.windowsVersion = ScriptedDesktop::windows98;
    store(L"ProgramFilesDir", L"C:\\Program Files");
    win32::setTrustedEnvironment();
    CHECK(value(L"windir") == realWindows());
    CHECK(value(L"ProgramFiles") == L"C:\\Program Files");
    CHECK(value(L"SystemRoot") == L"C:\\planted");
    CHECK(value(L"SystemDrive") == L"P:");
}
