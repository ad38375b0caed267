// Program files with a version resource of a test's choosing.
#pragma once

#include <string>
#include <utility>
#include <vector>

using VersionStrings = std::vector<std::pair<std::wstring, std::wstring>>;

// Makes a small program file with these strings in one English table; without strings it has no version
// resource. Its folder must exist.
void makeProgramFile(const std::wstring& path, const VersionStrings& strings = {});
