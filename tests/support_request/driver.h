// What the drivers share: arguments and output in UTF-8, failures as a line of their own.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "win32/base/error.h"
#include "win32/base/flavour.h"
#include "win32/base/text.h"

inline std::vector<std::wstring> argumentList() {
    int count = 0;
    wchar_t** list = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    std::vector<std::wstring> result(list + 1, list + count);
    ::LocalFree(list);
    return result;
}

// `name<tab>text` on a line of its own.
inline void tell(const char* name, const std::wstring& text) {
    std::printf("%s\t%s\n", name, win32::toUtf8(text).c_str());
    std::fflush(stdout);
}

// The text behind `name=`, when the argument begins so.
inline bool isOption(const std::wstring& argument, const std::wstring& name, std::wstring& value) {
    if (argument.compare(0, name.size() + 1, name + L'=') != 0) return false;
    value = argument.substr(name.size() + 1);
    return true;
}

// Runs the body; what it throws becomes the line `error<tab>number description`.
template <class Body>
int tellingFailure(Body body) {
    try {
        body();
        return 0;
    } catch (const win32::Error& error) {
        char number[20];
        std::snprintf(number, sizeof number, "%08lX ", static_cast<unsigned long>(error.number));
        tell("error", std::wstring(number, number + 9) + error.description);
        return 1;
    }
}
