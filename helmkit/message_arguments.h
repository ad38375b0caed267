// The arguments of FormatMessage.
#pragma once

#include <string>
#include <vector>

#include "win32/base/platform.h"

namespace helmkit {

// The texts of a one-dimensional array of values, by value or by reference, or of a single value; none of
// nothing. Numbers are in decimal, missing values empty. Arrays of more dimensions raise E_INVALIDARG, types
// without a text, and arrays whose elements are not what their type says, DISP_E_TYPEMISMATCH.
std::vector<std::wstring> messageArguments(const VARIANT& arguments);

}  // namespace helmkit
