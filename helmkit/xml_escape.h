// Text as the content of an XML 1.0 element.
#pragma once

#include <string>
#include <string_view>

namespace helmkit {

// & < > by name; CR, which a reader would turn into a line feed, and every character above U+007E as a
// decimal reference, so that the result is ASCII. Characters that XML forbids, lone surrogates among them,
// become U+FFFD.
std::wstring xmlEscape(std::wstring_view text);

}  // namespace helmkit
