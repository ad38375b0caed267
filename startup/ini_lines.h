// Lines of win.ini and system.ini. A text holds one character per byte of the file, so that a file in any
// code page comes back unchanged outside the lines that are rewritten.
#pragma once

#include <string>
#include <vector>

namespace startup {

// The text split at its line ends (CR LF, LF or CR; a run of bare CR or LF line ends shrinks by half, since
// every pair of them counts as one). What follows the last line end is a line only if it is not empty.
std::vector<std::wstring> iniLines(const std::wstring& text);

// True when the line, without blanks around it, begins with the key, which is in lower case and ends in "=";
// the line's own letters may be of either case. `rest` is what follows, without blanks around it.
bool isIniLine(const std::wstring& line, const std::wstring& key, std::wstring& rest);

// The text with every line of that key, in whatever section, replaced by `replacement`; each line ends in CR
// LF.
std::wstring withLinesReplaced(const std::wstring& text, const std::wstring& key,
                               const std::wstring& replacement);

}  // namespace startup
