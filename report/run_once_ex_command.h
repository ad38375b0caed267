// The forms of a RunOnceEx value. Calls nothing of Windows.
#pragma once

#include <string>

namespace report {

// The part that names a file: of "library|function|arguments" the library, of "||command" the command, of any
// other text the whole.
std::wstring runOnceExCommand(const std::wstring& data);

}  // namespace report
