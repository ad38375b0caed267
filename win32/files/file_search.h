// Looking for files and at what Windows tells of them. A redirected program is shown the real folders.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "win32/base/platform.h"

namespace win32 {

struct FoundFile {
    std::wstring name;  // without its folder
    DWORD attributes = 0;
    uint64_t size = 0;
    FILETIME lastWrite = {};

    bool isFolder() const { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
};

// What is in a folder, files and folders, without `.` and `..`, in the file system's order. A folder that is
// not there or may not be looked into is thrown.
std::vector<FoundFile> filesIn(const std::wstring& folder);

// One file or folder named without wildcards; nothing when it is not there.
std::optional<FoundFile> findFile(const std::wstring& path);

// `X:\`, or `\\server\share\`; empty when the path names neither.
std::wstring rootOf(const std::wstring& full);

// False for a file, for nothing there and for what may not be looked at.
bool isFolder(const std::wstring& path);

// Deletes a file; a read-only one is refused, as is one that is not there.
void removeFile(const std::wstring& path);

// The path from its drive or server on, without `.` and `..`. Relative paths start at the current folder.
std::wstring fullPath(const std::wstring& path);

// The label of the volume that holds a path; empty when it has none or cannot tell.
std::wstring volumeLabel(const std::wstring& path);

// Seconds since 1970-01-01 00:00 UTC, negative before it.
int64_t unixTime(const FILETIME& time);

}  // namespace win32
