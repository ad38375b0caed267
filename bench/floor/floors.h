// The least that the four refreshes and the backup can do: plain loops of the Windows calls that the work
// cannot do without. No code of the program is used but its look-up of known-good services, which calls
// nothing of Windows.
#pragma once

#include <string>
#include <vector>

#include "bench/floor/list.h"

namespace bench::floor {

// For each value of the Run-family keys: its name, then one query on the open key; one search, one long name
// and one version query for each distinct file.
std::vector<Row> readGeneral();
// For each package: one open, one query; files as above.
std::vector<Row> readWinlogon();
// One read for each of the eighteen places, each ini file read once and passed over once.
std::vector<Row> readOther();
// For each service: one open and one query; of those that are not known good the display name; files as
// above.
std::vector<Row> readServices();

// Reads each value of the exported keys once and writes names and bytes to a file.
void backup(const std::wstring& file);

// The value of the environment variable `windir`, with a backslash at its end.
std::wstring windowsFolder();

}  // namespace bench::floor
