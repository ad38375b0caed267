// A configured command line taken apart by text rules alone: no disk access, no Windows.
#pragma once

#include <string>
#include <string_view>

namespace files {

// The file part of a command line: the program, or for a rundll32 command the library that rundll32 loads.
// Never fails; a text that no rule matches comes back unchanged or trimmed. A path that contains a forward
// slash is cut there, and ".exe" is put after an extension of four or more letters: both are kept on purpose.
std::wstring GetFileNameFromCommandLine(std::wstring_view cl);

}  // namespace files
