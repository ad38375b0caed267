#include "support/zip_names.h"

#include <algorithm>

#include "win32/base/path.h"

namespace support {

namespace {

std::wstring withBackslashes(std::wstring path) {
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

bool namesDrive(const std::wstring& path) {
    return path.size() >= 2 && path[1] == L':';
}

bool namesServer(const std::wstring& path) {
    return path.compare(0, 2, L"\\\\") == 0;
}

// Where the path goes on behind `X:` or `\\server\share`.
size_t rootLength(const std::wstring& path) {
    if (namesDrive(path)) return 2;
    if (!namesServer(path)) return 0;
    size_t end = 2;
    for (int part = 0; part < 2 && end != std::wstring::npos; ++part)
        end = path.find(L'\\', end + (part > 0));
    return std::min(end, path.size());
}

}  // namespace

std::wstring resolvedPath(const std::wstring& spec, const std::wstring& folder) {
    std::wstring path = withBackslashes(spec);
    const std::wstring base = withBackslashes(folder);
    if (base.empty() || namesDrive(path) || namesServer(path)) return path;
    if (!path.empty() && path[0] == L'\\') return base.substr(0, rootLength(base)) + path;
    return win32::withBackslash(base) + path;
}

bool hasWildcard(const std::wstring& text) {
    return text.find_first_of(L"*?") != std::wstring::npos;
}

std::wstring folderPart(const std::wstring& path) {
    return path.substr(0, path.size() - namePart(path).size());
}

std::wstring namePart(const std::wstring& path) {
    const size_t end = path.find_last_of(L"\\/:");
    return end == std::wstring::npos ? path : path.substr(end + 1);
}

std::wstring storedName(const std::wstring& path, bool withFolders) {
    const std::wstring whole = withBackslashes(path);
    if (!withFolders) return namePart(whole);
    std::wstring name;
    for (size_t begin = rootLength(whole); begin < whole.size();) {
        const size_t end = std::min(whole.find(L'\\', begin), whole.size());
        const std::wstring part = whole.substr(begin, end - begin);
        begin = end + 1;
        if (part.empty() || part == L".") continue;
        if (part == L"..") {
            const size_t parent = name.find_last_of(L'/');
            name.resize(parent == std::wstring::npos ? 0 : parent);
        } else {
            name += name.empty() ? part : L'/' + part;
        }
    }
    return name;
}

bool matchesPattern(const std::wstring& name, const std::wstring& pattern) {
    if (pattern == L"*.*") return true;
    size_t at = 0, in = 0, star = std::wstring::npos, resume = 0;
    while (at < name.size()) {
        if (in < pattern.size() && pattern[in] == L'*') {
            star = in++;
            resume = at;
        } else if (in < pattern.size() && (pattern[in] == L'?' || pattern[in] == name[at])) {
            ++in;
            ++at;
        } else if (star != std::wstring::npos) {
            // The last star takes one character more.
            in = star;
            at = ++resume;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(L'*', in) == std::wstring::npos;
}

}  // namespace support
