// Texts: code page, letter case, blanks. Strings are UTF-16 std::wstring inside the whole program.
#pragma once

#include <string>
#include <string_view>

#include "win32/base/blanks.h"

namespace win32 {

// By the ANSI code page of this Windows; what it lacks becomes its replacement character.
std::string toAnsi(std::wstring_view text);
std::wstring fromAnsi(std::string_view bytes);

// True when the text comes back the same from the code page: no character replaced, none "best fitted".
bool survivesAnsi(std::wstring_view text);

// True when a call to Windows takes the text as the name of exactly that file, key or value: it holds no NUL,
// which would end it there, and in the ANSI flavour nothing that the code page lacks, which another character
// would stand for.
bool isExactName(std::wstring_view name);

// One character U+0000 to U+00FF for each byte, and back.
std::wstring bytesAsText(std::string_view bytes);
std::string textAsBytes(std::wstring_view text);

// Half a surrogate pair becomes U+FFFD.
std::string toUtf8(std::wstring_view text);

// Lower case by fixed rules, whatever the user's language (no dotless i).
std::wstring lowered(std::wstring_view text);

bool sameIgnoringCase(std::wstring_view a, std::wstring_view b);

}  // namespace win32
