// Helmkit's objects made directly, without the DLL, and the shapes in which their results come.
#pragma once

#include <string>
#include <vector>

#include <doctest/doctest.h>

#include "tests/support/text.h"
#include "win32/com/com.h"

template <class Object>
win32::ComPtr<Object> make() {
    return win32::ComPtr<Object>::adopt(new Object());
}

// A string for an [in] argument, for the length of the call.
inline win32::BString bs(std::wstring_view text) {
    return win32::BString(text);
}

// What an operation with one [out] string gives: `stringFrom([&](BSTR* text) { return object->Do(text); })`.
template <class Call>
std::wstring stringFrom(Call call) {
    win32::BString text;
    REQUIRE(call(text.out()) == S_OK);
    return text.text();
}

// The items of a list of strings, walked one by one through its enumerator.
template <class List>
std::vector<std::wstring> itemsOf(List* list) {
    win32::ComPtr<IUnknown> unknown;
    REQUIRE(list->get__NewEnum(unknown.out()) == S_OK);
    auto walk = unknown.as<IEnumVARIANT>(IID_IEnumVARIANT);
    std::vector<std::wstring> items;
    for (;;) {
        win32::Variant item;
        if (walk->Next(1, item.out(), nullptr) != S_OK) return items;
        REQUIRE(item.vt == VT_BSTR);
        items.push_back(std::wstring(win32::BString::view(item.bstrVal)));
    }
}
