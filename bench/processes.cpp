#include "bench/processes.h"

#include <doctest/doctest.h>

#include "win32/base/text.h"
#include "win32/system/system.h"

namespace bench {

Process::Process(std::wstring commandLine) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    REQUIRE_MESSAGE(::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW,
                                     nullptr, nullptr, &startup, &process),
                    win32::toUtf8(commandLine));
    ::CloseHandle(process.hThread);
    handle.reset(process.hProcess);
    id = process.dwProcessId;
}

DWORD Process::exitCode() const {
    DWORD code = 0;
    ::WaitForSingleObject(handle.get(), INFINITE);
    ::GetExitCodeProcess(handle.get(), &code);
    return code;
}

std::wstring beside(const std::wstring& name) {
    return win32::moduleFolder(nullptr) + L'\\' + name;
}

}  // namespace bench
