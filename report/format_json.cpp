// JSON Lines: a header, then one entry a line (docs/report.md).
//
// Everything outside ASCII is escaped: the lines survive every pipe, console and editor, also those that take
// them for another code page, and no character ends a line before its time.
#include "report/exact_text.h"
#include "report/format.h"
#include "report/json_report.h"
#include "report/rapidjson.h"

namespace report {

namespace {

class Line {
  public:
    void begin() { writer_.StartObject(); }
    void begin(const wchar_t* name) {
        key(name);
        writer_.StartObject();
    }
    void end() { writer_.EndObject(); }

    void number(const wchar_t* name, const std::wstring& digits) {
        key(name);
        writer_.RawValue(digits.c_str(), digits.size(), rapidjson::kNumberType);
    }
    void truth(const wchar_t* name, bool value) {
        key(name);
        writer_.Bool(value);
    }
    void text(const wchar_t* name, const std::wstring& value) {
        key(name);
        string(writable(value));
        if (isWritable(value)) return;
        string(name + unitsSuffix, true);
        string(unitsAsHex(value));
    }
    void list(const wchar_t* name, const std::vector<std::wstring>& values) {
        key(name);
        writer_.StartArray();
        for (const std::wstring& value : values) string(writable(value));
        writer_.EndArray();
    }
    std::wstring taken() {
        std::wstring line(buffer_.GetString(), buffer_.GetString() + buffer_.GetSize());
        return line + L'\n';
    }

  private:
    void key(const wchar_t* name) { writer_.Key(name); }
    void string(const std::wstring& value, bool isKey = false) {
        const auto length = static_cast<rapidjson::SizeType>(value.size());
        isKey ? writer_.Key(value.c_str(), length) : writer_.String(value.c_str(), length);
    }

    rapidjson::StringBuffer buffer_;
    rapidjson::Writer<rapidjson::StringBuffer, rapidjson::UTF16<wchar_t>, rapidjson::ASCII<>> writer_{
        buffer_};
};

void writeFields(Line& line, const Entry& entry) {
    for (const FieldRow& row : fieldTable()) {
        if (!entry[row.field]) continue;
        const std::wstring& text = entry.text(row.field);
        switch (row.kind) {
            case FieldKind::text:
                line.text(row.name, text);
                break;
            case FieldKind::truth:
                line.truth(row.name, text == L"true");
                break;
            case FieldKind::number:
                line.number(row.name, text);
                break;
        }
    }
}

std::wstring entryLine(const Entry& entry) {
    Line line;
    line.begin();
    writeFields(line, entry);
    line.end();
    return line.taken();
}

void writeHeader(Line& line, const Header& header) {
    line.number(L"format", std::to_wstring(formVersion));
    line.text(L"program", L"QuillonReport");
    line.text(L"version", header.version);
    line.text(L"computer", header.computer);
    line.text(L"user", header.user);
    line.text(L"time", header.time);
    line.text(L"windows", header.windows);
    line.list(L"categories", header.categories);
    line.truth(L"all", header.all);
    line.truth(L"hash", header.hash);
}

std::wstring headerLine(const Header& header, const Header* comparedWith = nullptr) {
    Line line;
    line.begin();
    writeHeader(line, header);
    if (comparedWith) {
        line.begin(L"comparedWith");
        writeHeader(line, *comparedWith);
        line.end();
    }
    line.end();
    return line.taken();
}

std::wstring changeLine(const Change& change) {
    const wchar_t* const kinds[] = {L"added", L"removed", L"changed"};
    Line line;
    line.begin();
    line.text(L"change", kinds[static_cast<int>(change.kind)]);
    if (change.kind == Change::Kind::changed) {
        std::vector<std::wstring> names;
        names.reserve(change.fields.size());
        for (Field field : change.fields) names.emplace_back(fieldTable()[static_cast<size_t>(field)].name);
        line.list(L"fields", names);
    }
    if (change.kind != Change::Kind::added) {
        line.begin(L"before");
        writeFields(line, change.before);
        line.end();
    }
    if (change.kind != Change::Kind::removed) {
        line.begin(L"after");
        writeFields(line, change.after);
        line.end();
    }
    line.end();
    return line.taken();
}

class JsonFormat : public Format {
  public:
    std::wstring written(const Report& report) const override {
        std::wstring text = headerLine(report.header);
        for (const Entry& entry : report.entries) text += entryLine(entry);
        return text;
    }
    bool canCompare() const override { return true; }
    std::wstring written(const Difference& difference) const override {
        std::wstring text = headerLine(difference.after, &difference.before);
        for (const Change& change : difference.changes) text += changeLine(change);
        return text;
    }
};

}  // namespace

const Format& jsonFormat() {
    static const JsonFormat format;
    return format;
}

}  // namespace report
