#include "report/json_report.h"

#include <algorithm>

#include "report/exact_text.h"
#include "report/rapidjson.h"

namespace report {

namespace {

using Document = rapidjson::GenericDocument<rapidjson::UTF16<wchar_t>>;
using Value = Document::ValueType;

[[noreturn]] void refuse(const std::wstring& what) {
    throw MalformedReport(what);
}

const Value* memberOf(const Value& object, const std::wstring& name) {
    const auto found = object.FindMember(name.c_str());
    return found == object.MemberEnd() ? nullptr : &found->value;
}

std::wstring textOf(const Value& value, const std::wstring& name) {
    if (!value.IsString()) refuse(name + L" is no string");
    return {value.GetString(), value.GetStringLength()};
}

// What the units in hex say goes before what could be written.
std::wstring exactText(const Value& object, const Value& value, const std::wstring& name) {
    std::wstring text = textOf(value, name);
    const Value* units = memberOf(object, name + unitsSuffix);
    if (units && !unitsFromHex(textOf(*units, name + unitsSuffix), text)) {
        refuse(name + unitsSuffix + L" holds no units");
    }
    return text;
}

std::wstring fieldText(const Value& object, const Value& value, const FieldRow& row) {
    switch (row.kind) {
        case FieldKind::text:
            return exactText(object, value, row.name);
        case FieldKind::truth:
            if (!value.IsBool()) refuse(row.name + std::wstring(L" is neither true nor false"));
            return value.GetBool() ? L"true" : L"false";
        case FieldKind::number:
            if (!value.IsUint64()) refuse(row.name + std::wstring(L" is no whole number"));
            return std::to_wstring(value.GetUint64());
    }
    return {};
}

Entry entryOf(const Value& object) {
    Entry entry;
    for (const FieldRow& row : fieldTable()) {
        if (const Value* value = memberOf(object, row.name))
            entry.set(row.field, fieldText(object, *value, row));
    }
    if (!entry[Field::category]) refuse(L"there is no category");
    return entry;
}

std::wstring headerText(const Value& object, const std::wstring& name) {
    const Value* value = memberOf(object, name);
    return value ? exactText(object, *value, name) : std::wstring();
}

bool headerTruth(const Value& object, const std::wstring& name) {
    const Value* value = memberOf(object, name);
    return value && value->IsBool() && value->GetBool();
}

Header headerOf(const Value& object) {
    const Value* format = memberOf(object, L"format");
    if (!format || !format->IsInt()) refuse(L"there is no version of the form");
    if (format->GetInt() != formVersion)
        refuse(L"the form is of version " + std::to_wstring(format->GetInt()));
    Header header;
    header.version = headerText(object, L"version");
    header.computer = headerText(object, L"computer");
    header.user = headerText(object, L"user");
    header.time = headerText(object, L"time");
    header.windows = headerText(object, L"windows");
    header.all = headerTruth(object, L"all");
    header.hash = headerTruth(object, L"hash");
    const Value* categories = memberOf(object, L"categories");
    if (!categories || !categories->IsArray()) refuse(L"there is no list of categories");
    for (const Value& category : categories->GetArray())
        header.categories.push_back(textOf(category, L"a category"));
    return header;
}

// Recursion would let a deeply nested text use up the stack.
void parseLine(Document& document, const std::string& line) {
    const unsigned how = rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
    document.Parse<how, rapidjson::UTF8<>>(line.data(), line.size());
    if (document.HasParseError()) refuse(L"no JSON");
    if (!document.IsObject()) refuse(L"no JSON object");
}

}  // namespace

Report readJsonReport(const std::string& bytes) {
    Report report;
    size_t number = 0;
    for (size_t at = 0; at < bytes.size();) {
        const size_t end = std::min(bytes.find('\n', at), bytes.size());
        ++number;
        try {
            Document document;
            parseLine(document, bytes.substr(at, end - at));
            if (number == 1) {
                report.header = headerOf(document);
            } else {
                report.entries.push_back(entryOf(document));
            }
        } catch (const MalformedReport& fault) {
            refuse(L"line " + std::to_wstring(number) + L": " + fault.text);
        }
        at = end + 1;
    }
    if (number == 0) refuse(L"the file is empty");
    return report;
}

}  // namespace report
