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

// A key's name has up to 255 characters, a value's up to 16,383.
//
// `ask(text, &length)` is called with the usual room first and with room for the longest name only after
// ERROR_MORE_DATA. Asked for name and data in one call, Windows also answers that for data that is too long:
// then the second answer is final.
template <class F, class Ask>
LONG readName(std::wstring& name, Ask ask) {
    const DWORD usual = 512, longest = 1 << 16;
    typename F::Char small[usual];
    typename F::String large;
    typename F::Char* text = small;
    DWORD room = usual, length = usual;
    LONG error = ask(text, &length);
    if (error == ERROR_MORE_DATA) {
        large.resize(longest);
        text = large.data();
        room = length = longest;
        error = ask(text, &length);
    }
    if (error == ERROR_SUCCESS) name = F::out(text, std::min(length, room));
    return error;
}

// Data of any length; what is long is read in the value's own room. The size that a call reports is used only
// as far as the buffer goes, and only on success: Windows 9x leaves the size of a missing value untouched.
template <class Ask>
LONG readData(RegistryValue& value, bool isWide, Ask ask) {
    const int attempts = 24;
    BYTE small[1024];
    BYTE* bytes = small;
    DWORD room = sizeof small;
    for (int i = 0; i < attempts; ++i) {
        DWORD size = room, type = REG_NONE;
        LONG error = ask(bytes, &size, &type);
        if (error == ERROR_SUCCESS) {
            value.type = type;
            if (bytes == small) {
                value.data.assign(reinterpret_cast<char*>(bytes), std::min(size, room));
            } else {
                value.data.resize(std::min(size, room));
            }
            if (!isWide) value.data = wideData(type, std::move(value.data));
        }
        if (error != ERROR_MORE_DATA) return error;
        room = std::max(size, 2 * room);
        // Without what stood there, which growing would copy.
        if (value.data.capacity() < room) value.data = std::string();
        value.data.resize(room);
        bytes = reinterpret_cast<BYTE*>(value.data.data());
    }
    return ERROR_MORE_DATA;
}

}  // namespace win32
