#include "report/categories.h"

#include <algorithm>

namespace report {

namespace {

const CategoryName table[] = {
    {L"run", L"General Startup Programs"},
    {L"winlogon", L"Winlogon Startup Programs"},
    {L"custom", L"Custom Startup Programs"},
    {L"services", L"Services"},
};

}  // namespace

std::span<const CategoryName> categoryNames() {
    return table;
}

bool isCategory(std::wstring_view name) {
    return std::any_of(std::begin(table), std::end(table),
                       [&](const CategoryName& category) { return name == category.name; });
}

}  // namespace report
