// Texts that come from elsewhere, as a message box may show them.
#pragma once

#include <string>

namespace resources {

// At most 1,000 characters, the middle of a longer text being replaced by an ellipsis: a box larger than the
// screen cannot be answered. Characters that would write the question anew become visible: C0 controls and
// DEL their pictures (U+2400 on); C1 controls, line and paragraph separators and marks of writing direction
// U+FFFD. Where the box takes the characters of a code page, which has none of these, all become "?".
std::wstring boxText(const std::wstring& text, bool isAnsi);

}  // namespace resources
