// Files that Windows' registry editor reads.
#pragma once

#include <string>
#include <vector>

#include "helmkit/client/registry_access.h"

namespace files {

// Registry-export texts as they come from the library: they may be of many megabytes.
using ExportTexts = std::vector<win32::BString>;

// Writes the texts, one after the other, behind the header of this Windows family: "REGEDIT4" in the ANSI
// code page on Windows 95, 98 and Me, whose editors read nothing else, "Windows Registry Editor Version 5.00"
// in UTF-16 with its byte-order mark on the NT family. Each text is released as soon as it is copied. A file
// that is there is replaced; failures are thrown. Gives back what the texts name as not exported.
[[nodiscard]] std::vector<std::wstring> writeRegistryFile(const std::wstring& path, ExportTexts texts);

}  // namespace files
