#include "bench/floor/files.h"

#include <vector>

#include <winver.h>

namespace bench::floor {

namespace {

const DWORD pathRoom = 2000;

// A redirected program would be shown other files in the system folder.
class NoRedirection {
  public:
    NoRedirection() : isOff_(::Wow64DisableWow64FsRedirection(&before_)) {}
    ~NoRedirection() {
        if (isOff_) ::Wow64RevertWow64FsRedirection(before_);
    }

  private:
    void* before_ = nullptr;
    bool isOff_;
};

std::wstring programOf(const std::wstring& command) {
    if (command.empty() || command[0] != L'"') return command.substr(0, command.find(L' '));
    return command.substr(1, command.find(L'"', 1) - 1);
}

std::wstring fullLongPath(const std::wstring& name) {
    wchar_t found[pathRoom], longName[pathRoom];
    DWORD length = ::SearchPathW(nullptr, name.c_str(), nullptr, pathRoom, found, nullptr);
    if (length == 0 || length >= pathRoom) return name;
    length = ::GetLongPathNameW(found, longName, pathRoom);
    return length < pathRoom ? std::wstring(longName, length) : std::wstring();
}

std::wstring stringOf(const std::vector<char>& block, const std::wstring& table, const wchar_t* name) {
    void* text = nullptr;
    UINT length = 0;
    const std::wstring path = L"\\StringFileInfo\\" + table + L"\\" + name;
    if (!::VerQueryValueW(block.data(), path.c_str(), &text, &length) || length == 0) return {};
    return std::wstring(static_cast<const wchar_t*>(text));
}

void readStrings(FileStrings& strings) {
    DWORD ignored = 0;
    DWORD size = ::GetFileVersionInfoSizeW(strings.path.c_str(), &ignored);
    if (size == 0) return;
    std::vector<char> block(size);
    if (!::GetFileVersionInfoW(strings.path.c_str(), 0, size, block.data())) return;
    void* found = nullptr;
    UINT length = 0;
    if (!::VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", &found, &length) || length < 4) return;
    const auto* translation = static_cast<const WORD*>(found);
    wchar_t table[9];
    ::wsprintfW(table, L"%04x%04x", translation[0], translation[1]);
    strings.description = stringOf(block, table, L"FileDescription");
    strings.company = stringOf(block, table, L"CompanyName");
}

}  // namespace

const FileStrings& Files::of(const std::wstring& command) {
    auto [entry, isNew] = known_.try_emplace(programOf(command));
    if (isNew) {
        NoRedirection off;
        entry->second.path = fullLongPath(entry->first);
        readStrings(entry->second);
    }
    return entry->second;
}

}  // namespace bench::floor
