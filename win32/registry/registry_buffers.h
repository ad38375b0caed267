// Room for the registry's answers, whose size may grow between two questions. For registry.cpp only.
#pragma once

#include <algorithm>
#include <string>

#include "win32/base/flavour.h"
#include "win32/base/utf16_bytes.h"
#include "win32/registry/registry.h"

namespace win32 {

inline bool isTextType(DWORD type) {
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

// Text data from the code page; data of other types unchanged.
inline std::string wideData(DWORD type, std::string data) {
    return isTextType(type) ? bytesOf(fromAnsi(data)) : std::move(data);
}

// A name: of a key up to 255 characters, of a value up to 16383.
template <class F>
class NameBuffer {
  public:
    // `ask(text, &length)` is repeated with more room until it says something else than ERROR_MORE_DATA. When
    // that is asked of name and data in one call, it gives up at the longest name: the data was too long.
    template <class Ask>
    LONG fill(std::wstring& name, Ask ask) {
        const DWORD longest = 1 << 16;
        for (DWORD room = 512;; room = longest) {
            typename F::Char small[512];
            typename F::String large(room > 512 ? room : 0, typename F::Char{});
            auto* text = large.empty() ? small : large.data();
            DWORD length = room;
            LONG error = ask(text, &length);
            if (error == ERROR_MORE_DATA && room < longest) continue;
            if (error == ERROR_SUCCESS) name = F::out(text, std::min(length, room));
            return error;
        }
    }
};

// Data of any length. What a call reports is believed only as far as the buffer goes, and only on success:
// Windows 9x leaves the size of a missing value untouched.
class DataBuffer {
  public:
    template <class Ask>
    LONG fill(RegistryValue& value, bool isWide, Ask ask) {
        const int attempts = 24;
        BYTE small[1024];
        BYTE* bytes = small;
        DWORD room = sizeof small;
        for (int i = 0; i < attempts; ++i) {
            DWORD size = room, type = REG_NONE;
            LONG error = ask(bytes, &size, &type);
            if (error == ERROR_SUCCESS) {
                value.type = type;
                value.data.assign(reinterpret_cast<char*>(bytes), std::min(size, room));
                if (!isWide) value.data = wideData(type, std::move(value.data));
            }
            if (error != ERROR_MORE_DATA) return error;
            room = std::max(size, 2 * room);
            large_.resize(room);
            bytes = reinterpret_cast<BYTE*>(large_.data());
        }
        return ERROR_MORE_DATA;
    }

  private:
    std::string large_;
};

}  // namespace win32
