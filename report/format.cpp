#include "report/format.h"

#include <vector>

namespace report {

namespace {

struct FormatRow {
    const wchar_t* name;
    const Format& (*format)();
};
const FormatRow table[] = {{L"text", textFormat}, {L"csv", csvFormat}, {L"json", jsonFormat}};

}  // namespace

const Format* formatNamed(std::wstring_view name) {
    for (const FormatRow& row : table) {
        if (name == row.name) return &row.format();
    }
    return nullptr;
}

std::wstring formatNames(bool (Format::*question)() const) {
    std::vector<std::wstring> names;
    for (const FormatRow& row : table) {
        if (!question || (row.format().*question)()) names.emplace_back(row.name);
    }
    std::wstring text;
    for (size_t i = 0; i < names.size(); ++i) {
        if (i) text += i + 1 == names.size() ? L" or " : L", ";
        text += names[i];
    }
    return text;
}

}  // namespace report
