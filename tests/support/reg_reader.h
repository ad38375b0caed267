// A reader of registry-export texts of the tests' own, strict and exact: it adds nothing and repairs nothing.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace reg {

struct Value {
    std::wstring name;
    uint32_t type;
    std::string data;  // strings as UTF-16 little-endian bytes, as under the header of version 5.00
    bool operator==(const Value&) const = default;
};

struct Key {
    std::wstring path;  // full, with its root's long name
    std::vector<Value> values;
    bool operator==(const Key&) const = default;
};

struct File {
    std::vector<Key> keys;                // in the text's order
    std::vector<std::wstring> omissions;  // what stands behind "; not exported: "
};

// Throws std::runtime_error, with the line in question, on anything that is not well-formed. `text` is the
// body of a file, without its header line.
File read(const std::wstring& text);

}  // namespace reg
