#include "tests/faults/driven_program.h"

#include <doctest/doctest.h>

#include <sstream>

#include "tests/support/registry_fixture.h"
#include "tests/support/temp_folder.h"
#include "win32/base/handle.h"

namespace {

void setVariables(const Driving& driving, const std::wstring& result) {
    auto both = [](size_t first, size_t second) {
        return std::to_wstring(first) + L' ' + std::to_wstring(second);
    };
    ::SetEnvironmentVariableW(L"QUILLON_TEST_HIVES", RegistryFixture::name().c_str());
    ::SetEnvironmentVariableW(L"QUILLON_TEST_WINDOWS", driving.windows.c_str());
    ::SetEnvironmentVariableW(L"QUILLON_TEST_RESULT", result.c_str());
    ::SetEnvironmentVariableW(L"QUILLON_TEST_FAULT", both(driving.number, driving.error).c_str());
    ::SetEnvironmentVariableW(L"QUILLON_TEST_ROUNDS",
                              both(driving.rounds.first, driving.rounds.second).c_str());
}

// Has the new process load a library before its first instruction.
void inject(HANDLE process, const std::wstring& library) {
    const SIZE_T size = (library.size() + 1) * sizeof(wchar_t);
    void* name = ::VirtualAllocEx(process, nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    REQUIRE(name);
    REQUIRE(::WriteProcessMemory(process, name, library.c_str(), size, nullptr));
    // kernel32 lies at the same address in every process.
    const auto load = reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "LoadLibraryW")));
    win32::OwnedObject thread(::CreateRemoteThread(process, nullptr, 0, load, name, 0, nullptr));
    REQUIRE(thread);
    REQUIRE(::WaitForSingleObject(thread.get(), 60000) == WAIT_OBJECT_0);
    DWORD loaded = 0;
    REQUIRE(::GetExitCodeThread(thread.get(), &loaded));
    REQUIRE(loaded != 0);
}

DWORD exitCodeOf(const Driving& driving) {
    const std::wstring program = driving.folder + L"\\Quillon.exe";
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    REQUIRE(::CreateProcessW(program.c_str(), nullptr, nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr,
                             driving.folder.c_str(), &startup, &process));
    win32::OwnedObject thread(process.hThread), owned(process.hProcess);
    inject(owned.get(), driving.folder + L"\\injected.dll");
    ::ResumeThread(thread.get());
    DWORD code = STILL_ACTIVE;
    if (::WaitForSingleObject(owned.get(), driving.patience) != WAIT_OBJECT_0) {
        ::TerminateProcess(owned.get(), STILL_ACTIVE);
        ::WaitForSingleObject(owned.get(), 60000);
    }
    ::GetExitCodeProcess(owned.get(), &code);
    return code;
}

}  // namespace

DrivenRun drive(const Driving& driving) {
    const std::wstring result = driving.folder + L"\\result.txt";
    ::DeleteFileW(result.c_str());
    setVariables(driving, result);
    DrivenRun run;
    run.exitCode = exitCodeOf(driving);
    if (::GetFileAttributesW(result.c_str()) == INVALID_FILE_ATTRIBUTES) return run;
    std::istringstream lines(TempFolder::read(result));
    for (std::string line; std::getline(lines, line);) {
        const std::string text = line.substr(line.find(' ') + 1);
        if (line.find("box ") == 0) run.boxes.push_back(text);
        if (line.find("resources ") == 0) run.resources.push_back(text);
        if (line.find("calls ") == 0) run.calls = std::stoul(text);
        if (line.find("failed ") == 0) run.failed = text;
    }
    return run;
}
