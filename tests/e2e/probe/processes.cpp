// Starting a program and asking whether it still runs.
#include "tests/e2e/probe/commands.h"
#include "tests/e2e/probe/json.h"

namespace probe {
namespace {

std::map<DWORD, HANDLE> started;

// start <full path> [<working folder> [<arguments>]]
std::string start(const Fields& fields) {
    std::wstring path = field(fields, 0);
    std::wstring commandLine = L"\"" + path + L"\"";
    std::wstring folder = fields.size() > 2 ? fields[2] : path.substr(0, path.rfind(L'\\'));
    if (fields.size() > 3) commandLine += L' ' + fields[3];
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!::CreateProcessW(path.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                          folder.c_str(), &startup, &process))
        throw Failure{"CreateProcess", ::GetLastError()};
    ::CloseHandle(process.hThread);
    started[process.dwProcessId] = process.hProcess;
    return object({member("pid", process.dwProcessId)});
}

HANDLE processField(const Fields& fields) {
    auto process = started.find(static_cast<DWORD>(numberField(fields, 0)));
    if (process == started.end()) throw Failure{"not started here"};
    return process->second;
}

// state <pid>
std::string state(const Fields& fields) {
    HANDLE process = processField(fields);
    DWORD code = 0;
    bool running = ::WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    ::GetExitCodeProcess(process, &code);
    return object({flag("running", running), member("code", static_cast<long long>(code))});
}

// kill <pid>
std::string kill(const Fields& fields) {
    ::TerminateProcess(processField(fields), 1);
    return done();
}

std::string version(const Fields&) {
    return object({member("version", static_cast<long long>(::GetVersion()))});
}

// environment <name>
std::string environment(const Fields& fields) {
    wchar_t text[1024];
    DWORD length = ::GetEnvironmentVariableW(field(fields, 0).c_str(), text, ARRAYSIZE(text));
    return object({member("text", quoted(std::wstring_view(text, length)))});
}

// setenvironment <name> <value>: for what is started from now on
std::string setEnvironment(const Fields& fields) {
    if (!::SetEnvironmentVariableW(field(fields, 0).c_str(), field(fields, 1).c_str()))
        throw Failure{"SetEnvironmentVariable", ::GetLastError()};
    return done();
}

}  // namespace

void addProcessCommands(Commands& commands) {
    commands.insert({{L"start", start},
                     {L"state", state},
                     {L"kill", kill},
                     {L"version", version},
                     {L"environment", environment},
                     {L"setenvironment", setEnvironment}});
}

}  // namespace probe
