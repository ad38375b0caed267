// Files that Windows' registry editor reads.
#pragma once

#include <string>

namespace files {

// Writes a registry-export text behind the header of this Windows family: "REGEDIT4" in the ANSI code page on
// Windows 95, 98 and Me, whose editors read nothing else, "Windows Registry Editor Version 5.00" in UTF-16
// with its byte-order mark on the NT family. A file that is there is replaced; failures are thrown.
void writeRegistryFile(const std::wstring& path, const std::wstring& body);

}  // namespace files
