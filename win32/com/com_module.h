// What a DLL with COM classes exports, from one table of its classes.
#pragma once

#include <cstddef>

#include "win32/base/platform.h"

namespace win32 {

struct ComClass {
    const CLSID* clsid;
    const wchar_t* progId;  // "Helmkit.LogWriter"
    // Makes an object and gives one reference to it, through the interface asked for.
    HRESULT (*create)(REFIID wanted, void** object);
};

struct ComModule {
    const ComClass* classes;
    size_t count;
    const GUID* library;  // of its type library, whose version is libraryMajor.libraryMinor
    WORD libraryMajor, libraryMinor;
};

// DllGetClassObject and DllCanUnloadNow.
HRESULT getClassObject(const ComModule& module, REFCLSID clsid, REFIID iid, void** object) noexcept;
HRESULT canUnloadNow() noexcept;

}  // namespace win32
