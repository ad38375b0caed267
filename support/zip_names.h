// Names in archives: how a path becomes one, and which ones a specification means. Pure.
#pragma once

#include <string>

namespace support {

// The path that a specification means, seen from a folder: relative ones are put behind it, one that begins
// with a single backslash behind its drive; an empty folder changes nothing. `/` counts as `\` in all of
// them.
std::wstring resolvedPath(const std::wstring& spec, const std::wstring& folder);

bool hasWildcard(const std::wstring& text);

// The folder part with its backslash, or empty; and what stands behind it.
std::wstring folderPart(const std::wstring& path);
std::wstring namePart(const std::wstring& path);

// The name under which a path is stored: its bare name, or, with its folders, the path from the root on with
// forward slashes. Drive, server and share never go into an archive, nor do `.` and `..`: no archive of ours
// writes outside the folder it is unpacked in.
std::wstring storedName(const std::wstring& path, bool withFolders);

// Whether a name matches a pattern of `*` (any number of any characters) and `?` (exactly one); `*.*` means
// every name, with or without a point. Letters must have been made lower case before.
bool matchesPattern(const std::wstring& name, const std::wstring& pattern);

}  // namespace support
