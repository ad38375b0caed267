// The names of the categories, in the window's order. Calls nothing of Windows.
#pragma once

#include <span>
#include <string_view>

namespace report {

struct CategoryName {
    const wchar_t* name;   // on the command line and in the report
    const wchar_t* title;  // its tab in the window
};

std::span<const CategoryName> categoryNames();
bool isCategory(std::wstring_view name);

}  // namespace report
