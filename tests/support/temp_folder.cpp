#include "tests/support/temp_folder.h"

#include <doctest/doctest.h>

#include "win32/base/handle.h"

namespace {

template <class Visit>
int visitAll(const std::wstring& folder, Visit visit) {
    WIN32_FIND_DATAW found;
    win32::OwnedFind search(::FindFirstFileW((folder + L"\\*").c_str(), &found));
    int count = 0;
    if (!search) return count;
    do {
        std::wstring name = found.cFileName;
        if (name == L"." || name == L"..") continue;
        ++count;
        visit(folder + L'\\' + name, (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
    } while (::FindNextFileW(search.get(), &found));
    return count;
}

void deleteFolder(const std::wstring& folder) {
    visitAll(folder, [](const std::wstring& path, bool isFolder) {
        ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        isFolder ? deleteFolder(path) : static_cast<void>(::DeleteFileW(path.c_str()));
    });
    ::RemoveDirectoryW(folder.c_str());
}

}  // namespace

TempFolder::TempFolder() {
    static int number = 0;
    wchar_t temp[MAX_PATH];
    ::GetTempPathW(MAX_PATH, temp);
    path_ = temp +
            (L"quillon test " + std::to_wstring(::GetCurrentProcessId()) + L" " + std::to_wstring(++number));
    ::DeleteFileW(path_.c_str());
    deleteFolder(path_);
    REQUIRE(::CreateDirectoryW(path_.c_str(), nullptr));
}

TempFolder::~TempFolder() {
    deleteFolder(path_);
}

void TempFolder::write(const std::wstring& path, const std::string& bytes) {
    win32::OwnedFile file(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    REQUIRE(file);
    DWORD written = 0;
    REQUIRE(::WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
}

std::string TempFolder::read(const std::wstring& path) {
    win32::OwnedFile file(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                        nullptr, OPEN_EXISTING, 0, nullptr));
    REQUIRE(file);
    std::string bytes(::GetFileSize(file.get(), nullptr), '\0');
    DWORD got = 0;
    REQUIRE(::ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &got, nullptr));
    return bytes;
}

int TempFolder::count() const {
    return visitAll(path_, [](const std::wstring&, bool) {});
}
