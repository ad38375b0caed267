// The registry's native calls, which take counted names and open links as such. The program's own registry
// code is what is tested, so the tests' view of the registry uses none of it. They are asked for by their
// second names: the first ones are kept from the program where it plays Windows 98.
#pragma once

#include <string_view>

#include "win32/base/platform.h"

#include <winternl.h>

template <class Function>
Function native(const char* name) {
    auto address = ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), name);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

inline UNICODE_STRING counted(std::wstring_view text) {
    USHORT size = static_cast<USHORT>(text.size() * sizeof(wchar_t));
    return {size, size, const_cast<wchar_t*>(text.data())};
}

// ZwCreateKey or ZwOpenKey by a counted name below a key; a link is opened itself. Null when it fails.
inline HKEY nativeKey(const char* function, HKEY parent, std::wstring_view name,
                      ACCESS_MASK access = KEY_ALL_ACCESS) {
    using Call =
        NTSTATUS(WINAPI*)(HANDLE*, ACCESS_MASK, OBJECT_ATTRIBUTES*, ULONG, UNICODE_STRING*, ULONG, ULONG*);
    using Open = NTSTATUS(WINAPI*)(HANDLE*, ACCESS_MASK, OBJECT_ATTRIBUTES*);
    UNICODE_STRING text = counted(name);
    const ULONG ignoreCaseOpenLink = OBJ_CASE_INSENSITIVE | OBJ_OPENLINK;
    OBJECT_ATTRIBUTES attributes = {};
    attributes.Length = sizeof attributes;
    attributes.RootDirectory = parent;
    attributes.ObjectName = &text;
    attributes.Attributes = ignoreCaseOpenLink;
    HANDLE key = nullptr;
    NTSTATUS status = std::string_view(function) == "ZwCreateKey"
                          ? native<Call>(function)(&key, access, &attributes, 0, nullptr, 0, nullptr)
                          : native<Open>(function)(&key, access, &attributes);
    return status >= 0 ? static_cast<HKEY>(key) : nullptr;
}
