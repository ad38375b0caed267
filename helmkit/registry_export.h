// Keys and values of this machine's registry in the registry editor's export notation.
#pragma once

#include <string>

#include "win32/base/platform.h"

namespace helmkit {

// The key (in the letters given), its values and its subkeys, in the registry's order. Empty when it is
// missing. What cannot be written is named in a comment line: names that the notation cannot carry, keys that
// cannot be read, links to other keys.
std::wstring exportKey(HKEY hive, const std::wstring& path);

// The key's header and the value. Empty when either is missing.
std::wstring exportValue(HKEY hive, const std::wstring& path, const std::wstring& name);

}  // namespace helmkit
