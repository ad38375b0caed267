// The registry calls of the floors, one Windows call each.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "bench/floor/windows.h"

namespace bench::floor {

class Key {
  public:
    Key(HKEY root, const std::wstring& path) {
        if (::RegOpenKeyExW(root, path.c_str(), 0, reading, &key_)) key_ = nullptr;
    }
    ~Key() {
        if (key_) ::RegCloseKey(key_);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    HKEY get() const { return key_; }

    std::vector<std::wstring> valueNames() const {
        return names([&](DWORD i, wchar_t* name, DWORD* length) {
            return ::RegEnumValueW(key_, i, name, length, nullptr, nullptr, nullptr, nullptr);
        });
    }
    std::vector<std::wstring> subkeyNames() const {
        return names([&](DWORD i, wchar_t* name, DWORD* length) {
            return ::RegEnumKeyExW(key_, i, name, length, nullptr, nullptr, nullptr, nullptr);
        });
    }
    // A string value, empty when it is missing.
    std::wstring text(const std::wstring& valueName) const {
        wchar_t data[512];
        DWORD size = sizeof data - sizeof(wchar_t);
        if (!key_ || ::RegQueryValueExW(key_, valueName.c_str(), nullptr, nullptr,
                                        reinterpret_cast<BYTE*>(data), &size)) {
            return {};
        }
        data[size / sizeof(wchar_t)] = 0;
        return data;
    }

  private:
    template <class Ask>
    std::vector<std::wstring> names(Ask ask) const {
        std::vector<std::wstring> found;
        wchar_t name[512];
        DWORD length = 512;
        for (DWORD i = 0; key_ && !ask(i, name, &length); ++i, length = 512) found.emplace_back(name, length);
        return found;
    }

    HKEY key_ = nullptr;
};

}  // namespace bench::floor
