#include <doctest/doctest.h>

#include "report/arguments.h"
#include "report/iso_time.h"
#include "report/options.h"

namespace {

using Texts = std::vector<std::wstring>;

std::wstring refusal(const Texts& arguments) {
    try {
        report::parseOptions(arguments);
    } catch (const report::UsageError& error) {
        return error.text;
    }
    return {};
}

}  // namespace

TEST_CASE("a command line is taken apart as the C runtime does") {
    struct Row {
        const wchar_t* line;
        Texts arguments;
    };
    const Row rows[] = {
        {L"", {}},
        {L"program", {}},
        {L"\"C:\\a b\\program.exe\"", {}},
        {L"program  run\tcustom ", {L"run", L"custom"}},
        {L"\"C:\\a b\\p.exe\" --output \"C:\\my reports\\a.json\"", {L"--output", L"C:\\my reports\\a.json"}},
        {L"p --output=\"C:\\a b\"", {L"--output=C:\\a b"}},
        {L"p \"\" x", {L"", L"x"}},
        {L"p C:\\a\\\\b", {L"C:\\a\\\\b"}},
        {L"p \"C:\\a b\\\\\" next", {L"C:\\a b\\", L"next"}},
        {L"p a\\\"b a\\\\\\\"b", {L"a\"b", L"a\\\"b"}},
        {L"p \"a\"\"b\" c", {L"a\"b", L"c"}},
        {L"p \"never closed", {L"never closed"}},
    };
    for (const Row& row : rows) CHECK((report::argumentsOf(row.line) == row.arguments));
}

TEST_CASE("without a category all are taken, otherwise the chosen ones in the window's order") {
    CHECK((report::parseOptions({}).categories == Texts{L"run", L"winlogon", L"custom", L"services"}));
    CHECK(
        (report::parseOptions({L"services", L"run", L"services"}).categories == Texts{L"run", L"services"}));
    CHECK((report::parseOptions({}).format == L"text"));
}

TEST_CASE("options are taken with their values, behind a blank or an equals sign") {
    const report::Options options =
        report::parseOptions({L"--format", L"json", L"--output=a=b", L"--save", L"s", L"--compare", L"-c",
                              L"--all", L"--hash", L"--quiet"});
    CHECK((options.format == L"json"));
    CHECK((options.output == L"a=b"));
    CHECK((options.save == L"s"));
    CHECK((options.compare == L"-c"));
    CHECK((options.all && options.hash && options.quiet));
    CHECK_FALSE((options.help || options.version));
}

TEST_CASE("a wrong command line is refused with its reason") {
    CHECK((refusal({L"--colour"}) == L"unknown option --colour"));
    CHECK((refusal({L"-h"}) == L"unknown option -h"));
    CHECK((refusal({L"Run"}) == L"unknown category Run"));
    CHECK((refusal({L""}) == L"unknown category "));
    CHECK((refusal({L"--output"}) == L"--output needs a value"));
    CHECK((refusal({L"--output="}) == L"--output needs a value"));
    CHECK((refusal({L"--format", L"xml"}) == L"unknown format xml"));
    CHECK(
        (refusal({L"--format", L"csv", L"--compare", L"f"}) == L"--compare puts out text or json, not csv"));
    CHECK((refusal({L"--output", L"f", L"--save", L"f"}) == L"--output and --save name the same file"));
}

TEST_CASE("the help names every option") {
    const std::wstring help = report::helpText();
    for (const wchar_t* word :
         {L"run|winlogon|custom|services", L"--format", L"text, csv or json", L"--output", L"--all",
          L"--hash", L"--compare", L"--save", L"--quiet", L"--help", L"--version"}) {
        CHECK((help.find(word) != std::wstring::npos));
    }
}

TEST_CASE("moments are written as ISO 8601 does") {
    CHECK((report::isoTime(0) == L"1970-01-01T00:00:00Z"));
    CHECK((report::isoTime(-1) == L"1969-12-31T23:59:59Z"));
    CHECK((report::isoTime(951782399) == L"2000-02-28T23:59:59Z"));
    CHECK((report::isoTime(951782400) == L"2000-02-29T00:00:00Z"));
    CHECK((report::isoTime(-11644473600) == L"1601-01-01T00:00:00Z"));
}
