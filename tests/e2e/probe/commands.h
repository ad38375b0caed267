// What the probe can be asked. Each command takes the fields of its line and answers one JSON object; it
// throws Failure when Windows refuses or the line is wrong.
#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <vector>

namespace probe {

// Milliseconds that a window may take to answer. Only a program that hangs takes so long; a busy machine made
// the five seconds after which Windows itself calls a window hung too short.
constexpr UINT kPatience = 120'000;

struct Failure {
    std::string what;
    DWORD code = 0;
};

using Fields = std::vector<std::wstring>;
using Command = std::string (*)(const Fields&);
using Commands = std::map<std::wstring, Command>;

// The field at `index`, counted after the command's name; a Failure when the line has none.
const std::wstring& field(const Fields& fields, size_t index);
HWND windowField(const Fields& fields, size_t index);
int numberField(const Fields& fields, size_t index);

// The answer of a command with nothing to tell.
std::string done();

void addProcessCommands(Commands& commands);
void addWindowCommands(Commands& commands);
void addListCommands(Commands& commands);
void addRegistryCommands(Commands& commands);

}  // namespace probe
