// Texts that name a string in a file, as display names of services do from Windows Vista on.
#pragma once

#include <string>

namespace win32 {

// "@file,-number" (string resource `number` of a file, environment references allowed) as the text it names:
// from Vista on, from local files only, which are read and never loaded: the file itself, and those of its
// strings in the user's, the system's and the English language (`en-US\name.mui`). Any other text, and one
// whose string cannot be had, comes back as it is. A bare file name is looked for in the system folder.
std::wstring displayedText(const std::wstring& text);

}  // namespace win32
