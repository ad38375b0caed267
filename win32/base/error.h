// An error with a number and a description, thrown inside a module and turned into an HRESULT with IErrorInfo
// at its border.
#pragma once

#include <exception>
#include <string>

#include "win32/base/platform.h"

namespace win32 {

struct Error : std::exception {
    Error(long number, std::wstring description) : number(number), description(std::move(description)) {}
    const char* what() const noexcept override { return "win32::Error"; }

    long number;  // an HRESULT
    std::wstring description;
};

// The system's own text for a Win32 error code or an HRESULT, without its line break.
std::wstring systemDescription(DWORD code);

// A Win32 error code as an Error numbered by its HRESULT. `what` names the object, a path for instance.
[[noreturn]] void raiseWin32(DWORD code, const std::wstring& what = {});
[[noreturn]] void raiseLastError(const std::wstring& what = {});

[[noreturn]] void raise(HRESULT number, std::wstring description);

// Memory that Windows or a library did not give, as std::bad_alloc is described.
[[noreturn]] void raiseOutOfMemory();

// Describes the exception being handled: an Error as it is, memory shortage and others by their nature. Where
// there is no memory left for the description, it is empty.
Error currentError() noexcept;

}  // namespace win32
