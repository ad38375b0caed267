// Keys and values of this machine's registry in the registry editor's export notation.
#pragma once

#include <cstdint>
#include <string>

#include "helmkit/text_pieces.h"
#include "win32/base/platform.h"

namespace helmkit {

// The key (in the letters given), its values and its subkeys, in the registry's order. Empty when it is
// missing. What cannot be written is named in a comment line: names that the notation cannot carry, keys that
// cannot be read, links to other keys, values of more than `largest` bytes or that memory is short for.
// Beside the text itself there is room for one value at most.
TextPieces exportKey(HKEY hive, const std::wstring& path, size_t largest = SIZE_MAX);

// The key's header and the value. Empty when either is missing.
TextPieces exportValue(HKEY hive, const std::wstring& path, const std::wstring& name,
                       size_t largest = SIZE_MAX);

}  // namespace helmkit
