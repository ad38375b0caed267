// Text aligned for people, cut nowhere.
#include <algorithm>

#include "report/categories.h"
#include "report/exact_text.h"
#include "report/format.h"

namespace report {

namespace {

const size_t labelWidth = 14;

// What would move the cursor, break the line or turn the direction of writing is shown as a sign instead.
std::wstring printable(std::wstring_view raw) {
    std::wstring text = writable(raw);
    for (wchar_t& c : text) {
        const bool isMark = (c >= 0x200B && c <= 0x200F) || (c >= 0x2028 && c <= 0x202E) ||
                            (c >= 0x2060 && c <= 0x206F) || c == 0x061C || c == 0xFEFF;
        if (c < 0x20) {
            c = static_cast<wchar_t>(0x2400 + c);
        } else if (c == 0x7F) {
            c = 0x2421;
        } else if ((c >= 0x80 && c < 0xA0) || isMark) {
            c = 0xFFFD;
        }
    }
    return text;
}

std::wstring labelled(std::wstring label, const std::wstring& text) {
    label.resize(std::max(labelWidth, label.size() + 1), L' ');
    return L"    " + label + text + L'\n';
}

std::wstring placeText(const Entry& entry) {
    std::wstring place;
    if (entry[Field::hive]) place = entry.text(Field::hive);
    if (entry[Field::key]) place += L'\\' + printable(entry.text(Field::key));
    if (entry[Field::value]) place += L", value \"" + printable(entry.text(Field::value)) + L'"';
    if (!place.empty() && entry[Field::placeFile]) place += L", ";
    if (entry[Field::placeFile]) place += printable(entry.text(Field::placeFile));
    if (entry[Field::line]) place += L", line \"" + printable(entry.text(Field::line)) + L'"';
    return place;
}

std::wstring valueText(const Entry& entry, Field field) {
    std::wstring text = printable(entry.text(field));
    if (field == Field::size) return text + L" bytes";
    if (field == Field::command && entry[Field::commandType])
        return text + L"  (" + entry.text(Field::commandType) + L')';
    if (field == Field::file && entry.text(Field::exists) == L"false") return text + L"  (not there)";
    return text;
}

// Those that another line tells, or the heading.
bool hasLineOfItsOwn(const FieldRow& row) {
    const Field told[] = {Field::category, Field::kind, Field::name, Field::commandType, Field::exists};
    return !row.isOfPlace && std::find(std::begin(told), std::end(told), row.field) == std::end(told);
}

std::wstring titleOf(const Entry& entry) {
    if (entry.text(Field::kind) == kind::unreadable) return L"(could not be read)";
    const std::wstring name = printable(entry.text(Field::name));
    return name.empty() ? L"(no name)" : name;
}

std::wstring block(const Entry& entry, const std::wstring& before = {}) {
    const bool isContent = entry.text(Field::kind) == kind::content;
    std::wstring text = L"  " + before + (isContent ? L"- " : L"") + titleOf(entry) + L'\n';
    const std::wstring place = placeText(entry);
    if (!place.empty()) text += labelled(L"Place", place);
    for (const FieldRow& row : fieldTable()) {
        if (hasLineOfItsOwn(row) && entry[row.field])
            text += labelled(row.label, valueText(entry, row.field));
    }
    return text;
}

std::wstring counted(size_t count, const wchar_t* one, const wchar_t* several) {
    return std::to_wstring(count) + L' ' + (count == 1 ? one : several);
}

std::wstring headingOf(const Header& header) {
    return L"Quillon " + header.version + L" on " + printable(header.computer) + L", user " +
           printable(header.user) + L", Windows " + printable(header.windows) + L", " + header.time + L"\n";
}

std::wstring categoryText(const Report& report, const CategoryName& category) {
    std::wstring text;
    size_t count = 0;
    for (const Entry& entry : report.entries) {
        if (entry.text(Field::category) != category.name) continue;
        ++count;
        text += L'\n' + block(entry);
    }
    return L'\n' + std::wstring(category.title) + L": " + counted(count, L"entry", L"entries") + L'\n' + text;
}

bool isIn(const Header& header, const wchar_t* category) {
    return std::find(header.categories.begin(), header.categories.end(), category) != header.categories.end();
}

std::wstring shown(const Entry& entry, Field field) {
    return entry[field] ? valueText(entry, field) : std::wstring(L"(nothing)");
}

std::wstring changedText(const Change& change) {
    std::wstring text = L"  changed  " + titleOf(change.after) + L'\n';
    text += labelled(L"Place", placeText(change.after));
    for (Field field : change.fields) {
        const wchar_t* label = fieldTable()[static_cast<size_t>(field)].label;
        text += labelled(label, L"was  " + shown(change.before, field));
        text += labelled(L"", L"is   " + shown(change.after, field));
    }
    return text;
}

std::wstring changeText(const Change& change) {
    switch (change.kind) {
        case Change::Kind::added:
            return block(change.after, L"added    ");
        case Change::Kind::removed:
            return block(change.before, L"removed  ");
        case Change::Kind::changed:
            return changedText(change);
    }
    return {};
}

std::wstring withCrLf(const std::wstring& text) {
    std::wstring lines;
    for (wchar_t c : text) lines.append(c == L'\n' ? L"\r\n" : std::wstring(1, c));
    return lines;
}

class TextFormat : public Format {
  public:
    std::wstring written(const Report& report) const override {
        std::wstring text = headingOf(report.header);
        for (const CategoryName& category : categoryNames()) {
            if (isIn(report.header, category.name)) text += categoryText(report, category);
        }
        return withCrLf(text);
    }
    bool canCompare() const override { return true; }
    std::wstring written(const Difference& difference) const override {
        std::wstring text = headingOf(difference.after) + L"Compared with " +
                            printable(difference.before.computer) + L", " + difference.before.time + L": " +
                            counted(difference.changes.size(), L"change", L"changes") + L'\n';
        for (const Change& change : difference.changes) text += L'\n' + changeText(change);
        return withCrLf(text);
    }
};

}  // namespace

const Format& textFormat() {
    static const TextFormat format;
    return format;
}

}  // namespace report
