// A registry value's data as text, and text as data.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace helmkit {

// The type numbers of the registry that have a text of their own.
enum RegistryType : uint32_t {
    typeString = 1,
    typeExpandString = 2,
    typeBinary = 3,
    typeNumber = 4,
    typeBigEndianNumber = 5,
    typeMultiString = 7,
    typeLongNumber = 11,
};

struct ValueText {
    std::wstring text;
    int32_t status;  // 0 for a string, 234 (ERROR_MORE_DATA) for a multi-string, else 1630
                     // (ERROR_UNSUPPORTED_TYPE)
};

// Strings are cut at their first NUL and never expanded; a multi-string is its strings joined by line feeds,
// also those after an empty one, where other programs stop reading. Numbers are in decimal, all else is its
// bytes in hex with commas. Strings are UTF-16 little-endian bytes of any length: an odd last byte is left
// out.
ValueText textOfValue(uint32_t type, std::string_view data);

// The bytes of one string as REG_SZ, REG_EXPAND_SZ or, with a second terminator, REG_MULTI_SZ.
std::string dataOfString(uint32_t type, std::wstring_view text);

}  // namespace helmkit
