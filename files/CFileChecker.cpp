#include "files/CFileChecker.h"

#include <algorithm>

#include "files/command_line.h"
#include "win32/base/ascii.h"
#include "win32/base/path.h"
#include "win32/base/text.h"
#include "win32/files/files.h"
#include "win32/system/desktop.h"
#include "win32/system/environment.h"

namespace files {

namespace {

const std::wstring nativePrefix = L"\\??\\";

std::vector<std::wstring> foldersOf(const std::wstring& path) {
    std::vector<std::wstring> folders;
    for (size_t at = 0; at <= path.size();) {
        size_t end = std::min(path.find(L';', at), path.size());
        folders.push_back(win32::withBackslash(path.substr(at, end - at)));
        at = end + 1;
    }
    return folders;
}

}  // namespace

CFileChecker::CFileChecker() : searchFolders_(foldersOf(win32::environmentVariable(L"path"))) {}

std::wstring CFileChecker::GetFileNameFromCommandLine(const std::wstring& cl) const {
    return files::GetFileNameFromCommandLine(cl);
}

std::wstring CFileChecker::GetFullFileNameFromShortFilename(const std::wstring& fileName) {
    if (auto known = cache_.find(fileName)) return *std::move(known);
    std::wstring trimmed = win32::trimmed(fileName);
    bool isNative = win32::beginsWith(trimmed, nativePrefix);
    std::wstring result = resolved(isNative ? trimmed.substr(nativePrefix.size()) : trimmed);
    // Looked up as passed but stored trimmed, on purpose: a name with blanks around it is searched every
    // time.
    cache_.Add(result, trimmed);
    return result;
}

std::wstring CFileChecker::resolved(const std::wstring& name) {
    if (isOutOfReach(name)) return name;
    std::wstring found = win32::searchPath(name);
    if (found.empty()) return name;
    return win32::isNtFamily() ? longPaths_.of(found) : found;
}

}  // namespace files
