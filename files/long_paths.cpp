#include "files/long_paths.h"

#include <algorithm>

#include "win32/base/path.h"
#include "win32/files/file_search.h"
#include "win32/files/files.h"

namespace files {

namespace {

const size_t longestBase = 8, longestExtension = 3;

bool isAscii(wchar_t c) {
    return c >= 0x20 && c < 0x7F;
}

bool isLetterOrDigit(wchar_t c) {
    return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') || (c >= L'0' && c <= L'9');
}

// A path from a drive's root whose parts mean what they say: GetLongPathName treats slashes, dots, blanks at
// a part's end, servers and the like by rules of its own.
bool isPlain(const std::wstring& path) {
    if (path.size() < 4 || path.size() >= MAX_PATH || path.compare(1, 2, L":\\") != 0) return false;
    for (size_t i = 3; i <= path.size(); ++i) {
        const bool endsPart = i == path.size() || path[i] == L'\\';
        if (endsPart && std::wstring_view(L"\\. ").find(path[i - 1]) != std::wstring::npos) return false;
        if (i < path.size() && std::wstring_view(L"/:*?\"<>|").find(path[i]) != std::wstring::npos)
            return false;
    }
    return true;
}

enum class NameKind { longName, shortName, unsure };

// GetLongPathName leaves a name as it is written unless it is a legal 8.3 name; then it takes the name that
// the folder holds. Windows versions differ on blanks and on characters beyond ASCII.
NameKind kindOf(std::wstring_view name) {
    const size_t point = std::min(name.find(L'.'), name.size());
    const std::wstring_view extension = name.substr(std::min(point + 1, name.size()));
    bool isPlainName = point > 0, isAsciiName = true;
    for (wchar_t c : name) {
        isAsciiName &= isAscii(c);
        isPlainName &= c == L'.' || isLetterOrDigit(c) ||
                       std::wstring_view(L"_-~$#&()@!'`^{}%").find(c) != std::wstring_view::npos;
    }
    if (!isAsciiName) return NameKind::unsure;
    if (extension.find(L'.') != std::wstring_view::npos || point > longestBase ||
        extension.size() > longestExtension)
        return NameKind::longName;
    return isPlainName ? NameKind::shortName : NameKind::unsure;
}

// The last name of a path as its long form has it; empty when only GetLongPathName can tell.
std::wstring longName(const std::wstring& path, const std::wstring& name) {
    const NameKind kind = kindOf(name);
    if (kind == NameKind::longName) return name;
    if (kind == NameKind::unsure) return {};
    const auto found = win32::findFile(path);
    return found ? found->name : std::wstring();
}

}  // namespace

std::wstring LongPaths::of(const std::wstring& path) {
    if (!isPlain(path)) return win32::longPath(path);
    const size_t end = path.rfind(L'\\');
    const std::wstring& longFolder = folder(path.substr(0, end == 2 ? end + 1 : end));
    const std::wstring name = longFolder.empty() ? longFolder : longName(path, path.substr(end + 1));
    std::wstring whole = win32::withBackslash(longFolder) + name;
    return name.empty() || whole.size() >= MAX_PATH ? win32::longPath(path) : whole;
}

const std::wstring& LongPaths::folder(const std::wstring& path) {
    auto [entry, isNew] = folders_.try_emplace(path);
    if (isNew) entry->second = win32::longPath(path);
    return entry->second;
}

}  // namespace files
