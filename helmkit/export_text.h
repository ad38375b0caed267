// The registry editor's export notation, one key header and one value line at a time. Lines end with CR LF.
//
// What is written is read back by Windows as the same bytes: a string that the quoted notation cannot carry
// exactly (no or another terminator, inner NULs, an odd byte count, CR or LF) is written as bytes, so is a
// number of a wrong size. Names that cannot be written at all (NUL, CR, LF) are named in a comment.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace helmkit {

struct ExportedValue {
    std::wstring_view name;  // empty: the key's default value
    uint32_t type;
    std::string_view data;     // strings as UTF-16 little-endian bytes
    std::string_view hexData;  // the bytes for the hex notation: strings in the encoding of the file's header
};

// False for a name with characters that end a line, or a NUL.
bool canBeWritten(std::wstring_view name);

// A blank line and the key's full name in brackets.
void appendKeyHeader(std::wstring& text, std::wstring_view key);

// The value's line, or the comment in its place. `key` is the full name, for the comment. Room for the line
// is asked for once, before it is written.
void appendValue(std::wstring& text, std::wstring_view key, const ExportedValue& value);

// `; not exported: [key]` and the reason. Characters that would end the line are written as \u0000 codes.
void appendOmittedKey(std::wstring& text, std::wstring_view key, std::wstring_view reason);
// `; not exported: [key] "name"`.
void appendOmittedValue(std::wstring& text, std::wstring_view key, std::wstring_view name);

}  // namespace helmkit
