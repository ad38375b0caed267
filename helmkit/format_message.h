// Templates with numbered placeholders.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace helmkit {

// Each "%" followed by a digit 1 to 9 is replaced by the argument at that position (1 is the first). One
// pass: what was inserted is not searched again. A placeholder without argument stays as it is.
std::wstring formatMessage(std::wstring_view text, const std::vector<std::wstring>& arguments);

}  // namespace helmkit
