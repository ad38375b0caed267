// Objects that are known by name only, and called late.
#pragma once

#include "win32/com/com.h"

namespace win32 {

// A new object of a class named by its program identifier, null when there is none of that name here.
ComPtr<IDispatch> createByName(const wchar_t* programId);

// A property without arguments; failures are thrown.
Variant propertyOf(IDispatch* object, const wchar_t* name);

// The same as a number or a text, converted as Automation does.
LONG numberOf(IDispatch* object, const wchar_t* name);
std::wstring textOf(IDispatch* object, const wchar_t* name);

// Any value as text, in no language's own form.
std::wstring valueText(const VARIANT& value);

}  // namespace win32
