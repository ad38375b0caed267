#include <doctest/doctest.h>

#include "report/compare.h"
#include "report/format.h"

using report::Change;
using report::Entry;
using report::Field;
using report::Report;

namespace {

Entry at(const std::wstring& value, const std::wstring& name = L"", const std::wstring& category = L"run") {
    return Entry()
        .set(Field::category, category)
        .set(Field::hive, L"HKEY_LOCAL_MACHINE")
        .set(Field::key, L"Run")
        .set(Field::value, value)
        .set(Field::name, name);
}

Entry standard(const std::wstring& value) {
    return at(value, L"", L"services").set(Field::state, report::state::standard);
}

Report of(std::vector<Entry> entries) {
    Report report;
    report.header.categories = {L"run", L"services"};
    report.entries = std::move(entries);
    return report;
}

std::wstring told(const Report& before, const Report& after) {
    std::wstring text;
    for (const Change& change : report::compareReports(before, after).changes) {
        const bool isRemoved = change.kind == Change::Kind::removed;
        text += isRemoved ? L'-' : change.kind == Change::Kind::added ? L'+' : L'~';
        text += (isRemoved ? change.before : change.after).text(Field::value);
        for (Field field : change.fields)
            text += L':' + std::wstring(report::fieldTable()[(size_t)field].name);
        text += L' ';
    }
    return text;
}

}  // namespace

TEST_CASE("added, removed and changed entries are told, in the order of the new report") {
    CHECK(told(of({at(L"a"), at(L"b")}), of({at(L"a"), at(L"b")})).empty());
    CHECK((told(of({at(L"gone"), at(L"b", L"1")}), of({at(L"new"), at(L"b", L"2")})) ==
           L"+new ~b:name -gone "));
    CHECK(told(of({at(L"a"), at(L"b")}), of({at(L"b"), at(L"a")})).empty());
}

TEST_CASE("an entry's place is category, hive, key and value, or file and line") {
    Entry absent = at(L""), inFile = Entry().set(Field::category, L"run").set(Field::placeFile, L"win.ini");
    absent =
        Entry().set(Field::category, L"run").set(Field::hive, L"HKEY_LOCAL_MACHINE").set(Field::key, L"Run");
    CHECK((told(of({at(L"")}), of({absent})) == L"+ - "));
    Entry load = inFile, run = inFile;
    load.set(Field::line, L"load=");
    run.set(Field::line, L"run=");
    CHECK((told(of({load}), of({run})) == L"+ - "));
    // No text runs over into the next.
    Entry left = Entry().set(Field::category, L"run").set(Field::hive, L"a").set(Field::key, L"1:bc");
    Entry right = Entry().set(Field::category, L"run").set(Field::hive, L"a1:b").set(Field::key, L"c");
    CHECK((told(of({left}), of({right})) == L"+ - "));
}

TEST_CASE("entries of one place match in their order") {
    const Report two = of({at(L"a", L"1"), at(L"a", L"2")});
    CHECK(told(two, two).empty());
    CHECK((told(two, of({at(L"a", L"1")})) == L"-a "));
    CHECK((told(of({at(L"a", L"1")}), two) == L"+a "));
    CHECK((told(two, of({at(L"a", L"1"), at(L"a", L"3")})) == L"~a:name "));
}

TEST_CASE("what only one report was asked for makes no difference") {
    Entry hashed = at(L"a");
    hashed.set(Field::sha256, L"00");
    Entry other = at(L"a");
    other.set(Field::sha256, L"01");
    CHECK(told(of({hashed}), of({at(L"a")})).empty());
    CHECK((told(of({hashed}), of({other})) == L"~a:sha256 "));

    Report all = of({standard(L"s"), standard(L"t")}), few = of({});
    all.header.all = true;
    CHECK(told(all, few).empty());
    CHECK(told(few, all).empty());
    Report one = of({standard(L"s")});
    one.header.all = true;
    CHECK((told(all, one) == L"-t "));
    CHECK((told(all, of({at(L"s", L"", L"services")})) == L"~s:state "));
}

TEST_CASE("only the categories of the new report are compared, and the old one must have them") {
    Report services = of({});
    services.header.categories = {L"services"};
    CHECK(told(of({at(L"a")}), services).empty());
    CHECK_THROWS_AS(report::compareReports(services, of({})), report::IncomparableReports);
}

TEST_CASE("a difference is written for people and for programs") {
    Entry now = at(L"b", L"B");
    now.set(Field::command, L"evil.exe").set(Field::commandType, L"REG_SZ");
    const report::Difference difference =
        report::compareReports(of({at(L"b", L"B"), at(L"gone", L"Gone")}), of({now, at(L"new", L"New")}));
    const std::wstring text = report::textFormat().written(difference);
    CHECK((text.find(L": 3 changes\r\n") != std::wstring::npos));
    CHECK((text.find(L"  changed  B\r\n") != std::wstring::npos));
    CHECK((text.find(L"was  (nothing)\r\n") != std::wstring::npos));
    CHECK((text.find(L"is   evil.exe  (REG_SZ)\r\n") != std::wstring::npos));
    CHECK((text.find(L"  added    New\r\n") != std::wstring::npos));
    CHECK((text.find(L"  removed  Gone\r\n") != std::wstring::npos));
    const std::wstring json = report::jsonFormat().written(difference);
    CHECK((json.find(L"\"comparedWith\":{\"format\":1") != std::wstring::npos));
    CHECK((json.find(L"{\"change\":\"changed\",\"fields\":[\"command\",\"commandType\"],\"before\":{") !=
           std::wstring::npos));
    CHECK((json.find(L"{\"change\":\"added\",\"after\":{") != std::wstring::npos));
    CHECK((json.find(L"{\"change\":\"removed\",\"before\":{") != std::wstring::npos));
}
