#include "win32/files/file_search.h"

#include <string>

#include "win32/base/error.h"
#include "win32/base/flavour.h"
#include "win32/base/path.h"
#include "win32/files/files.h"

namespace win32 {

namespace {

const DWORD pathRoom = 2000;

template <class F>
FoundFile described(const typename F::FindData& data) {
    FoundFile found;
    found.name = F::out(data.cFileName, std::char_traits<typename F::Char>::length(data.cFileName));
    found.attributes = data.dwFileAttributes;
    found.size = static_cast<uint64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
    found.lastWrite = data.ftLastWriteTime;
    return found;
}

bool isSelfOrParent(const std::wstring& name) {
    return name == L"." || name == L"..";
}

}  // namespace

std::vector<FoundFile> filesIn(const std::wstring& folder) {
    if (!isExactName(folder)) raiseWin32(ERROR_PATH_NOT_FOUND, folder);
    NoFileRedirection off;
    return withFlavour([&]<class F>(F f) {
        std::vector<FoundFile> result;
        typename F::FindData data;
        OwnedFind search(noneIfNull(f.findFirstFile(f.in(withBackslash(folder) + L'*'), &data)));
        // The root of an empty drive holds nothing, not even itself.
        if (!search && ::GetLastError() == ERROR_FILE_NOT_FOUND) return result;
        if (!search) raiseLastError(folder);
        do {
            FoundFile found = described<F>(data);
            if (!isSelfOrParent(found.name)) result.push_back(found);
        } while (f.findNextFile(search.get(), &data));
        if (::GetLastError() != ERROR_NO_MORE_FILES) raiseLastError(folder);
        return result;
    });
}

std::optional<FoundFile> findFile(const std::wstring& path) {
    if (path.find_first_of(L"*?") != std::wstring::npos || !isExactName(path)) return {};
    NoFileRedirection off;
    return withFlavour([&]<class F>(F f) -> std::optional<FoundFile> {
        typename F::FindData data;
        OwnedFind search(noneIfNull(f.findFirstFile(f.in(path), &data)));
        if (!search) return {};
        return described<F>(data);
    });
}

std::wstring rootOf(const std::wstring& full) {
    if (full.size() >= 2 && full[1] == L':') return full.substr(0, 2) + L'\\';
    if (full.compare(0, 2, L"\\\\") != 0) return {};
    const size_t server = full.find(L'\\', 2);
    if (server == std::wstring::npos) return {};
    return full.substr(0, full.find(L'\\', server + 1)) + L'\\';
}

bool isFolder(const std::wstring& path) {
    const DWORD attributes = attributesOf(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

void removeFile(const std::wstring& path) {
    if (!isExactName(path)) raiseWin32(ERROR_FILE_NOT_FOUND, path);
    NoFileRedirection off;
    if (!withFlavour([&](auto f) { return f.deleteFile(f.in(path)); })) raiseLastError(path);
}

std::wstring fullPath(const std::wstring& path) {
    return withFlavour([&]<class F>(F f) {
        TextBuffer<F> buffer(pathRoom);
        typename F::Char* file = nullptr;
        DWORD length = f.getFullPathName(f.in(path), pathRoom, buffer.data(), &file);
        if (length == 0) raiseLastError(path);
        if (length >= pathRoom) raiseWin32(ERROR_FILENAME_EXCED_RANGE, path);
        return buffer.text(length);
    });
}

std::wstring volumeLabel(const std::wstring& path) {
    const std::wstring root = rootOf(fullPath(path));
    if (root.empty()) return {};
    return withFlavour([&]<class F>(F f) {
        TextBuffer<F> label(MAX_PATH + 1);
        if (!f.getVolumeInformation(f.in(root), label.data(), label.capacity(), nullptr, nullptr, nullptr,
                                    nullptr, DWORD{0})) {
            return std::wstring();
        }
        return label.text(std::char_traits<typename F::Char>::length(label.data()));
    });
}

int64_t unixTime(const FILETIME& time) {
    // FILETIME counts steps of 100 nanoseconds from 1601-01-01.
    const int64_t steps = static_cast<int64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    return steps / 10000000 - 11644473600;
}

}  // namespace win32
