// Values in the body of an HTML form. Pure.
#pragma once

#include <string>

namespace support {

// Replaces "+", carriage return, line feed and "\" by %2B, %0D, %0A and %5C, and nothing else: blanks, "&",
// "=", "%" and all other characters are sent as they are. Kept so on purpose: the support endpoint has always
// been sent this encoding.
std::wstring encodeFormValue(const std::wstring& text);

}  // namespace support
