// The error that a call raises.
#pragma once

#include <string>

#include "win32/base/error.h"

// Number 0 where it raises none.
template <class Call>
win32::Error raisedBy(Call call) {
    try {
        call();
    } catch (const win32::Error& error) {
        return error;
    }
    return win32::Error(0, {});
}

// Whether it raises that error of Windows, told with the name of what it is about.
template <class Call>
bool raises(DWORD code, const std::wstring& what, Call call) {
    const win32::Error error = raisedBy(call);
    return error.number == HRESULT_FROM_WIN32(code) &&
           error.description == what + L": " + win32::systemDescription(code);
}
