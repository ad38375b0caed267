// Bytes as printable text (RFC 4648, section 4), without line breaks.
#pragma once

#include <string>
#include <string_view>

namespace helmkit {

std::wstring base64(std::string_view bytes);

}  // namespace helmkit
