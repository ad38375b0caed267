// JSON out, tab-separated text in: the two ends of a probe command.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace probe {

std::string toUtf8(std::wstring_view text);
std::wstring fromUtf8(std::string_view bytes);

std::string quoted(std::wstring_view text);
std::string quoted(std::string_view ascii);

// "{...}" and "[...]" from finished pieces.
std::string object(const std::vector<std::string>& members);
std::string array(const std::vector<std::string>& items);
std::string member(std::string_view name, std::string_view json);
std::string member(std::string_view name, long long number);
std::string flag(std::string_view name, bool value);

// A command line's fields: separated by tabs, with \t, \n, \r and \\ for those characters inside a field.
std::vector<std::wstring> fields(std::string_view line);

}  // namespace probe
