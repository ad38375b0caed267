// Program files with a version resource of a test's choosing.
#pragma once

#include <string>
#include <utility>
#include <vector>

using VersionStrings = std::vector<std::pair<std::wstring, std::wstring>>;

// Makes a small program file with these strings in one English table, and this version; without strings it
// has no version resource. Its folder must exist.
struct VersionNumbers {
    unsigned short first = 0, second = 0, third = 0, fourth = 0;
};
void makeProgramFile(const std::wstring& path, const VersionStrings& strings = {},
                     const VersionNumbers& version = {});
