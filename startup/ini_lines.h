// Lines of win.ini and system.ini. A text holds one character per byte of the file, so that a file in any
// code page comes back unchanged outside the lines that are rewritten.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace startup {

// Walks the lines of a text, whose parts they are: split at its line ends (CR LF, LF or CR; a run of bare CR
// or LF line ends shrinks by half, since every pair of them counts as one). What follows the last line end is
// a line only if it is not empty.
class IniLines {
  public:
    explicit IniLines(std::wstring_view text) : rest_(text) {}
    // False after the last line.
    bool next(std::wstring_view& line);

  private:
    std::wstring_view rest_;
};

// True when the line, without blanks around it, begins with the key, which is in lower case and ends in "=";
// the line's own letters may be of either case. `rest` is what follows, without blanks around it.
bool isIniLine(std::wstring_view line, std::wstring_view key, std::wstring_view& rest);

struct IniLine {
    std::wstring key;   // in lower case, with its "="
    std::wstring rest;  // without blanks around it
};

// The lines of the keys that Windows starts programs from ("load=", "run=", "shell="), in their order and in
// whatever section.
std::vector<IniLine> startupLines(std::wstring_view text);

// The text with every line of that key, in whatever section, replaced by `replacement`; each line ends in CR
// LF.
std::wstring withLinesReplaced(std::wstring_view text, std::wstring_view key, std::wstring_view replacement);

}  // namespace startup
