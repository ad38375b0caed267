// A command line as arguments. Calls nothing of Windows.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace report {

// The arguments after the program's name, taken apart as the C runtime of Windows does: quotes keep blanks
// and tabs together, a quote with a backslash before it is a quote, and backslashes count in pairs before a
// quote only.
std::vector<std::wstring> argumentsOf(std::wstring_view commandLine);

}  // namespace report
