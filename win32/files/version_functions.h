// The functions of version.dll.
//
// They are looked up and not imported: since Windows Vista that library is none of those that a program gets
// from the system folder whatever stands beside it, so a file of its name there would be run before the
// program is.
#pragma once

#include "win32/base/flavour.h"

namespace win32 {

// All of them null where the library is missing.
template <class F>
struct VersionFunctions {
    using Char = typename F::Char;
    DWORD(WINAPI* getInfoSize)(const Char* file, DWORD* handle);
    BOOL(WINAPI* getInfo)(const Char* file, DWORD handle, DWORD size, void* block);
    BOOL(WINAPI* queryValue)(const void* block, const Char* path, void** found, UINT* length);
};

// The first call loads the library, so it is made with the file redirection on.
template <class F>
const VersionFunctions<F>& versionFunctions();

}  // namespace win32
