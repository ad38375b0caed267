// Writing a file whole or not at all: the new text goes into a file beside it, which then takes its place.
#include <algorithm>

#include "win32/base/error.h"
#include "win32/base/flavour.h"
#include "win32/files/file_replacement.h"
#include "win32/files/files.h"
#include "win32/system/system.h"

namespace win32 {

namespace {

const DWORD notThere = INVALID_FILE_ATTRIBUTES;

// Not every failing look means that there is nothing.
bool isMissing(const std::wstring& path) {
    return attributesOf(path) == notThere && ::GetLastError() == ERROR_FILE_NOT_FOUND;
}

bool moveFile(const std::wstring& from, const std::wstring& to) {
    return withFlavour([&](auto f) { return f.moveFile(f.in(from), f.in(to)); });
}

void deleteFile(const std::wstring& path) {
    withFlavour([&](auto f) { f.deleteFile(f.in(path)); });
}

// A name in the same folder that is not taken.
std::wstring freeNameBeside(const std::wstring& path) {
    DWORD number = ::GetTickCount() ^ ::GetCurrentProcessId() << 16;
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::wstring name = path + L'.' + std::to_wstring(number + attempt) + L".tmp";
        if (isMissing(name)) return name;
    }
    raiseWin32(ERROR_FILE_EXISTS, path);
}

// The NT family's step: ReplaceFile (Windows 2000 on) keeps attributes, access rights and creation time. It
// gets a name for the old file, which it would otherwise lose in some failures, or leave behind under a name
// of its own (Wine).
bool replaceInOneStep(const std::wstring& path, const std::wstring& replacement, bool isPresent) {
    using ReplaceFile = BOOL(WINAPI*)(const wchar_t*, const wchar_t*, const wchar_t*, DWORD, void*, void*);
    using MoveFileEx = BOOL(WINAPI*)(const wchar_t*, const wchar_t*, DWORD);
    static const auto replaceFile = systemProcedure<ReplaceFile>(L"kernel32.dll", "ReplaceFileW");
    static const auto moveFileEx = systemProcedure<MoveFileEx>(L"kernel32.dll", "MoveFileExW");
    if (!isPresent || !replaceFile) {
        return moveFileEx && moveFileEx(replacement.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING);
    }
    std::wstring old = freeNameBeside(path);
    bool done = replaceFile(path.c_str(), replacement.c_str(), old.c_str(), 0, nullptr, nullptr);
    DWORD error = ::GetLastError();
    if (!done && attributesOf(path) == notThere) {
        moveFile(old, path);
    } else {
        deleteFile(old);
    }
    ::SetLastError(error);
    return done;
}

// Windows 9x cannot move a file over another: the old one is renamed away and put back on failure.
bool replaceByRenaming(const std::wstring& path, const std::wstring& replacement, bool isPresent) {
    if (!isPresent) return moveFile(replacement, path);
    std::wstring old = freeNameBeside(path);
    if (!moveFile(path, old)) return false;
    if (moveFile(replacement, path)) {
        deleteFile(old);
        return true;
    }
    DWORD error = ::GetLastError();
    moveFile(old, path);
    ::SetLastError(error);
    return false;
}

}  // namespace

FileReplacement::FileReplacement(const std::wstring& path) : path_(path), attributes_(notThere) {
    if (!isExactName(path)) raiseWin32(ERROR_INVALID_NAME, path);
    attributes_ = attributesOf(path);
    if (attributes_ == notThere && ::GetLastError() != ERROR_FILE_NOT_FOUND) raiseLastError(path);
    if (attributes_ != notThere && attributes_ & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) {
        raiseWin32(ERROR_ACCESS_DENIED, path);
    }
    newPath_ = freeNameBeside(path);
    file_ = OwnedFile(withFlavour([&](auto f) {
        return noneIfNull(f.createFile(f.in(newPath_), DWORD{GENERIC_WRITE}, DWORD{0}, nullptr,
                                       DWORD{CREATE_NEW}, DWORD{FILE_ATTRIBUTE_NORMAL}, nullptr));
    }));
    if (!file_) raiseLastError(path);
}

FileReplacement::~FileReplacement() {
    file_.reset();
    if (newPath_.empty()) return;
    // A file that has been made read-only or hidden by then would stay.
    giveAttributes(FILE_ATTRIBUTE_NORMAL);
    deleteFile(newPath_);
}

void FileReplacement::giveAttributes(DWORD attributes) {
    withFlavour([&](auto f) { f.setFileAttributes(f.in(newPath_), attributes); });
}

void FileReplacement::write(const void* bytes, size_t count) {
    const size_t most = 1 << 20;
    for (size_t done = 0; done < count;) {
        DWORD size = static_cast<DWORD>(std::min(count - done, most)), written = 0;
        if (!::WriteFile(file_.get(), static_cast<const char*>(bytes) + done, size, &written, nullptr)) {
            raiseLastError(path_);
        }
        done += written;
        position_ += written;
        if (written != size) raiseWin32(ERROR_DISK_FULL, path_);
    }
}

void FileReplacement::seekTo(uint64_t offset) {
    LONG high = static_cast<LONG>(offset >> 32);
    ::SetLastError(ERROR_SUCCESS);
    DWORD low = ::SetFilePointer(file_.get(), static_cast<LONG>(offset), &high, FILE_BEGIN);
    if (low == INVALID_SET_FILE_POINTER && ::GetLastError() != ERROR_SUCCESS) raiseLastError(path_);
    position_ = offset;
}

void FileReplacement::commit() {
    if (!::FlushFileBuffers(file_.get())) raiseLastError(path_);
    file_.reset();
    if (attributes_ != notThere) giveAttributes(attributes_);
    const auto isThere = [&] { return attributesOf(path_) != notThere; };
    const auto replace = [&](bool isPresent) {
        return flavour() == Flavour::wide ? replaceInOneStep(path_, newPath_, isPresent)
                                          : replaceByRenaming(path_, newPath_, isPresent);
    };
    // Another program may have made or taken it away meanwhile, also between the look and the step.
    const bool isPresent = isThere();
    bool done = replace(isPresent);
    const DWORD error = ::GetLastError();
    if (!done && isThere() != isPresent) done = replace(!isPresent);
    if (!done) raiseWin32(error, path_);
    newPath_.clear();
}

void replaceFile(const std::wstring& path, const std::string& bytes) {
    NoFileRedirection off;
    FileReplacement replacement(path);
    replacement.write(bytes.data(), bytes.size());
    replacement.commit();
}

}  // namespace win32
