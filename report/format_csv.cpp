// CSV as spreadsheets read it: UTF-8 with a byte order mark, CR LF, a heading, one entry a row.
#include "report/exact_text.h"
#include "report/format.h"

namespace report {

namespace {

// A spreadsheet runs a cell that begins like a formula. The apostrophe makes it text.
std::wstring harmless(std::wstring text) {
    const bool isFormula =
        !text.empty() && std::wstring_view(L"=+-@\t\r").find(text[0]) != std::wstring_view::npos;
    return isFormula ? L"'" + text : text;
}

std::wstring cell(std::wstring_view raw) {
    std::wstring text = harmless(writable(raw));
    if (text.find_first_of(L",\"\r\n") == std::wstring::npos) return text;
    std::wstring quoted = L"\"";
    for (wchar_t c : text) quoted.append(c == L'"' ? 2 : 1, c);
    return quoted + L'"';
}

bool canBeBroken(const FieldRow& row) {
    return row.kind == FieldKind::text;
}

std::wstring heading() {
    std::wstring line = L"computer,time";
    for (const FieldRow& row : fieldTable()) line += std::wstring(L",") + row.name;
    for (const FieldRow& row : fieldTable()) {
        if (canBeBroken(row)) line += std::wstring(L",") + row.name + L"Utf16";
    }
    return line + L"\r\n";
}

class CsvFormat : public Format {
  public:
    std::wstring written(const Report& report) const override {
        std::wstring text = heading();
        const std::wstring origin = cell(report.header.computer) + L',' + cell(report.header.time);
        for (const Entry& entry : report.entries) {
            text += origin;
            for (const FieldRow& row : fieldTable()) text += L',' + cell(entry.text(row.field));
            for (const FieldRow& row : fieldTable()) {
                if (!canBeBroken(row)) continue;
                const std::wstring& value = entry.text(row.field);
                text += L',' + (isWritable(value) ? std::wstring() : unitsAsHex(value));
            }
            text += L"\r\n";
        }
        return text;
    }
    bool beginsWithByteOrderMark() const override { return true; }
};

}  // namespace

const Format& csvFormat() {
    static const CsvFormat format;
    return format;
}

}  // namespace report
