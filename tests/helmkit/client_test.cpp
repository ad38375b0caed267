// The library as the program uses it: what comes back is what the library answers.
#include <doctest/doctest.h>

#include <string>
#include <vector>

#include "helmkit/client/file_services.h"
#include "helmkit/client/registry_access.h"
#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"
#include "tests/support/page_fixture.h"
#include "win32/files/files.h"
#include "win32/system/environment.h"
#include "win32/system/system.h"

namespace {

const LONG machine = helmkit::HKLM;

struct Client : PageFixture {
    helmkit::SystemServices system;
    helmkit::FileServices files;
    helmkit::RegistryAccess registryAccess;
};

}  // namespace

TEST_CASE_FIXTURE(Client, "texts, folders and names of the system come back") {
    CHECK(system.FormatMessage(L"%1 and %2", {L"one", L"two"}) == L"one and two");
    CHECK(system.FormatMessage(L"none", {}) == L"none");
    CHECK(system.ExpandEnvironment(L"%no such one%") == L"%no such one%");
    CHECK(system.XmlEscape(L"<") == L"&lt;");
    CHECK(system.EncodeBinaryText(L"abc") == L"YWJj");
    CHECK(system.GetWindowsFolder() == win32::windowsFolder());
    CHECK(system.GetTempFolder() == win32::tempFolder());
    CHECK(system.NewUniqueId().size() == 36);
    const std::wstring name = system.GetTempFileName(L"qln");
    CHECK(name.find(win32::tempFolder() + L"qln") == 0);
    ::DeleteFileW(name.c_str());
}

TEST_CASE_FIXTURE(Client, "what waits for the program is handled") {
    MSG message;
    REQUIRE(::PostThreadMessageW(::GetCurrentThreadId(), WM_APP, 0, 0));
    REQUIRE(::PeekMessageW(&message, nullptr, WM_APP, WM_APP, PM_NOREMOVE));
    system.PumpEvents();
    CHECK_FALSE(::PeekMessageW(&message, nullptr, WM_APP, WM_APP, PM_REMOVE));
}

TEST_CASE_FIXTURE(Client, "what a file's version resource has comes back, and whether it has it") {
    const helmkit::VersionInfo info =
        system.GetFileVersionInfo(program(folder.file(L"a.exe"), {{L"CompanyName", L"A maker"}}));
    CHECK(info.Exists(L"CompanyName"));
    CHECK(info.Item(L"CompanyName") == L"A maker");
    CHECK_FALSE(info.Exists(L"ProductName"));
}

TEST_CASE_FIXTURE(Client, "files are written, read and looked for") {
    const std::wstring path = folder.file(L"sub\\a.txt");
    CHECK_FALSE(files.FileExists(path));
    files.CreateFolder(folder.file(L"sub"));
    files.WriteTextFile(path, std::wstring(L"one"));
    CHECK(files.FileExists(path));
    CHECK(files.ReadTextFile(path).text() == L"one");
    files.WriteTextFile(path, win32::BString(L"two"));
    CHECK(TempFolder::read(path) == "two");
    helmkit::FileServices::Bytes bytes = files.ReadFileBytes(path), none = files.ReadFileBytes(L"C:\\no");
    CHECK_FALSE(system.IsEmptyBytes(bytes));
    CHECK(system.IsEmptyBytes(none));
    CHECK_THROWS_AS(files.ReadTextFile(folder.file(L"no")), win32::Error);
    CHECK_THROWS_AS(files.WriteTextFile(folder.file(L"no\\a"), std::wstring(L"x")), win32::Error);
    CHECK_THROWS_AS(files.CreateFolder(folder.file(L"sub\\a.txt\\b")), win32::Error);
}

TEST_CASE_FIXTURE(Client, "values and keys are read, written, listed, written out and deleted") {
    using Names = std::vector<std::wstring>;
    CHECK(registryAccess.WriteValue(machine, L"top\\sub", L"v", L"text") == ERROR_SUCCESS);
    CHECK(registryAccess.ReadValue(machine, L"top\\sub", L"v").data == L"text");
    CHECK(registryAccess.ReadValue(machine, L"top\\sub", L"v").status == ERROR_SUCCESS);
    CHECK(registryAccess.ReadValue(machine, L"top\\sub", L"w").status == ERROR_FILE_NOT_FOUND);
    CHECK(registryAccess.ValueType(machine, L"top\\sub", L"v") == REG_SZ);
    CHECK(registryAccess.ValueType(machine, L"top\\sub", L"w") == -1);
    CHECK(registryAccess.EnumSubkeys(machine, L"top") == Names{L"sub"});
    CHECK(registryAccess.EnumValues(machine, L"top\\sub") == Names{L"v"});
    CHECK(registryAccess.ExportKey(machine, L"top\\sub").text().find(L"\"v\"=\"text\"") !=
          std::wstring::npos);
    CHECK(registryAccess.ExportValue(machine, L"top\\sub", L"v").text().find(L"\"v\"=\"text\"") !=
          std::wstring::npos);
    CHECK(registryAccess.ExportValue(machine, L"top\\sub", L"w").text().empty());
    CHECK(registryAccess.DeleteValue(machine, L"top\\sub", L"v") == ERROR_SUCCESS);
    CHECK(registryAccess.DeleteValue(machine, L"top\\sub", L"v") == ERROR_FILE_NOT_FOUND);
    CHECK(registryAccess.DeleteKey(machine, L"top") == ERROR_SUCCESS);
    CHECK(registryAccess.DeleteKey(machine, L"top") == ERROR_FILE_NOT_FOUND);
    for (int i = 0; i < 129; ++i) registryAccess.WriteValue(machine, L"many", std::to_wstring(i), L"x");
    CHECK(registryAccess.EnumValues(machine, L"many").size() == 129);
    CHECK_THROWS_AS(registryAccess.ReadValue(1, L"top", L"v"), win32::Error);
}
