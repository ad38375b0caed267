#include <doctest/doctest.h>

#include <algorithm>

#include "report/exact_text.h"
#include "report/format.h"
#include "report/json_report.h"

using report::Entry;
using report::Field;
using report::Report;

namespace {

const std::wstring loneHigh(1, static_cast<wchar_t>(0xD83D)), loneLow(1, static_cast<wchar_t>(0xDE00));
const std::wstring inner = std::wstring(L"a") + L'\0' + L"b";

Report sample() {
    Report report;
    report.header = {.version = L"2.1.0",
                     .computer = L"DESK",
                     .user = L"x" + loneHigh,
                     .time = L"2026-11-21T15:50:16Z",
                     .windows = L"5.1.2600 Service Pack 3",
                     .categories = {L"run", L"services"},
                     .all = true};
    Entry entry;
    entry.set(Field::category, L"run").set(Field::kind, L"entry").set(Field::hive, L"HKEY_LOCAL_MACHINE");
    entry.set(Field::key, L"SOFTWARE\\Run").set(Field::value, L"").set(Field::name, L"=1+1" + loneLow + L"x");
    entry.set(Field::command, L"\"C:\\a b.exe\", \x1b[31m\r\n\x2028\xe9").set(Field::exists, L"true");
    entry.set(Field::size, L"18446744073709551615");
    report.entries.push_back(entry);
    report.entries.push_back(Entry().set(Field::category, L"services").set(Field::key, inner));
    return report;
}

std::string json(const Report& report) {
    return report::utf8(report::jsonFormat().written(report));
}

std::wstring refusal(const std::string& bytes) {
    try {
        report::readJsonReport(bytes);
    } catch (const report::MalformedReport& fault) {
        return fault.text;
    }
    return {};
}

const std::string header = R"({"format":1,"categories":["run"]})"
                           "\n";

}  // namespace

TEST_CASE("what no form can carry is told, replaced and kept as units in hex") {
    CHECK(report::isWritable(L"\xD83D\xDE00 plain"));
    for (const std::wstring& text : {loneHigh, loneLow, loneLow + loneHigh, inner}) {
        CHECK_FALSE(report::isWritable(text));
        std::wstring back;
        CHECK(report::unitsFromHex(report::unitsAsHex(text), back));
        CHECK((back == text));
    }
    CHECK((report::writable(L"x" + loneHigh + L"y") == L"x\xFFFDy"));
    CHECK((report::unitsAsHex(inner) == L"006100000062"));
    std::wstring text;
    CHECK_FALSE(report::unitsFromHex(L"006", text));
    CHECK_FALSE(report::unitsFromHex(L"00g1", text));
}

TEST_CASE("a report written as JSON reads back the same, broken texts included") {
    const Report report = sample();
    const std::string bytes = json(report);
    const Report back = report::readJsonReport(bytes);
    CHECK((back.entries == report.entries));
    CHECK((back.header.user == report.header.user));
    CHECK((back.header.categories == report.header.categories));
    CHECK(back.header.all);
    CHECK_FALSE(back.header.hash);
}

TEST_CASE("JSON is ASCII, one object a line, with units beside a broken text") {
    const std::string bytes = json(sample());
    CHECK(std::count(bytes.begin(), bytes.end(), '\n') == 3);
    for (char c : bytes) CHECK((c == '\n' || (c >= 0x20 && c < 0x7F)));
    CHECK(bytes.find(R"("name":"=1+1\uFFFDx","nameUtf16":"003d0031002b0031de000078")") != std::string::npos);
    CHECK(bytes.find(R"("value":"")") != std::string::npos);
    CHECK(bytes.find(R"("size":18446744073709551615)") != std::string::npos);
    CHECK(bytes.find(R"("exists":true)") != std::string::npos);
    CHECK(bytes.find("maker") == std::string::npos);
}

TEST_CASE("what is no report is refused with the line that is not") {
    CHECK((refusal("") == L"the file is empty"));
    CHECK((refusal("{}\n") == L"line 1: there is no version of the form"));
    CHECK((refusal(R"({"format":2})") == L"line 1: the form is of version 2"));
    CHECK((refusal(R"({"format":1})") == L"line 1: there is no list of categories"));
    CHECK((refusal(header + "[]") == L"line 2: no JSON object"));
    CHECK((refusal(header + "{\"category\":\"run\"") == L"line 2: no JSON"));
    CHECK((refusal(header + "{\"category\":\"\xff\"}") == L"line 2: no JSON"));
    CHECK((refusal(header + "{}") == L"line 2: there is no category"));
    CHECK((refusal(header + R"({"category":1})") == L"line 2: category is no string"));
    CHECK((refusal(header + R"({"category":"run","size":-1})") == L"line 2: size is no whole number"));
    CHECK((refusal(header + R"({"category":"run","exists":1})") ==
           L"line 2: exists is neither true nor false"));
    CHECK((refusal(header + R"({"category":"run","name":"","nameUtf16":"x"})") ==
           L"line 2: nameUtf16 holds no units"));
    CHECK((refusal(header + std::string(1000000, '[')) == L"line 2: no JSON"));
    CHECK(refusal(header + R"({"category":"run","later":[{}]})").empty());
}

TEST_CASE("CSV makes formulas harmless, quotes what must be and has as many cells in each row") {
    const std::string bytes = report::utf8(report::csvFormat().written(sample()));
    CHECK(report::csvFormat().beginsWithByteOrderMark());
    CHECK(bytes.find(",'=1+1\xEF\xBF\xBDx,") != std::string::npos);
    CHECK(bytes.find(",\"\"\"C:\\a b.exe\"\", \x1b[31m\r\n\xE2\x80\xA8\xC3\xA9\",") != std::string::npos);
    CHECK(bytes.find(",003d0031002b0031de000078,") != std::string::npos);
    for (const wchar_t* start : {L"=", L"+", L"-", L"@", L"\t", L"\r"}) {
        Report report;
        report.entries.push_back(Entry().set(Field::name, start + std::wstring(L"x")));
        const std::wstring text = report::csvFormat().written(report);
        CHECK((text.find(L"'" + std::wstring(start) + L"x") != std::wstring::npos));
    }
}

TEST_CASE("text shows every field whole and no character that a terminal obeys") {
    const std::wstring text = report::textFormat().written(sample());
    CHECK((text.find(L"General Startup Programs: 1 entry\r\n") != std::wstring::npos));
    CHECK((text.find(L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Run, value \"\"\r\n") != std::wstring::npos));
    CHECK((text.find(L"18446744073709551615 bytes\r\n") != std::wstring::npos));
    CHECK((text.find(L"\x241b[31m\x240d\x240a\xFFFD\xe9\r\n") != std::wstring::npos));
    for (wchar_t c : text) CHECK((c == L'\r' || c == L'\n' || (c >= 0x20 && c != 0x7F && c != 0x2028)));
}

TEST_CASE("a form is found by its name") {
    CHECK(report::formatNamed(L"csv") == &report::csvFormat());
    CHECK(report::formatNamed(L"xml") == nullptr);
    CHECK((report::formatNames() == L"text, csv or json"));
    CHECK((report::formatNames(&report::Format::canCompare) == L"text or json"));
}
