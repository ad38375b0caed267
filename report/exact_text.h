// Texts that no other form than their own units can carry exactly. Calls nothing of Windows.
//
// Names and data in the registry are counted units: half a surrogate pair and NUL may stand anywhere in them.
#pragma once

#include <string>
#include <string_view>

namespace report {

// True when the text is well-formed UTF-16 without NUL.
bool isWritable(std::wstring_view text);

// With U+FFFD in place of each NUL and each half of a surrogate pair.
std::wstring writable(std::wstring_view text);

// Each unit as four hexadecimal digits, and back; false for what is no such text.
std::wstring unitsAsHex(std::wstring_view text);
bool unitsFromHex(std::wstring_view hex, std::wstring& text);

// As UTF-8, for a text that is writable.
std::string utf8(std::wstring_view text);

}  // namespace report
