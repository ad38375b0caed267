// A console program that stands beside Quillon in the same Windows and answers, one JSON line for each
// command line on its standard input, what Quillon's windows and the registry hold.
#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "tests/e2e/probe/commands.h"
#include "tests/e2e/probe/json.h"

namespace probe {

const std::wstring& field(const Fields& fields, size_t index) {
    if (index + 1 >= fields.size()) throw Failure{"too few fields"};
    return fields[index + 1];
}

HWND windowField(const Fields& fields, size_t index) {
    auto number = std::wcstoul(field(fields, index).c_str(), nullptr, 10);
    HWND window = reinterpret_cast<HWND>(static_cast<ULONG_PTR>(number));
    if (!::IsWindow(window)) throw Failure{"no such window"};
    return window;
}

int numberField(const Fields& fields, size_t index) {
    return std::wcstol(field(fields, index).c_str(), nullptr, 10);
}

std::string done() {
    return object({});
}

namespace {

bool readLine(std::string& line) {
    line.clear();
    for (int character; (character = std::getchar()) != EOF;) {
        if (character == '\n') return true;
        line += static_cast<char>(character);
    }
    return false;
}

std::string answer(const Commands& commands, const std::string& line) {
    try {
        Fields parts = fields(line);
        auto command = commands.find(parts[0]);
        if (command == commands.end()) throw Failure{"unknown command"};
        return command->second(parts);
    } catch (const Failure& failure) {
        return object({member("error", quoted(failure.what)), member("code", failure.code)});
    }
}

// As on a machine where somebody has logged on. Otherwise the program and the probe would each start one, and
// the program has no display where that start fails. A window shows whether there is a display behind the
// desktop.
bool startDesktop() {
    HWND window =
        ::CreateWindowW(L"STATIC", nullptr, WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    return window && ::DestroyWindow(window);
}

}  // namespace
}  // namespace probe

int main() {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    // Places of windows in true pixels, as the program itself has them.
    ::SetProcessDPIAware();
    if (!probe::startDesktop()) return 1;
    probe::Commands commands;
    probe::addProcessCommands(commands);
    probe::addWindowCommands(commands);
    probe::addListCommands(commands);
    probe::addRegistryCommands(commands);
    for (std::string line; probe::readLine(line);) {
        std::printf("%s\n", probe::answer(commands, line).c_str());
        std::fflush(stdout);
    }
}
