#include <doctest/doctest.h>

#include <codecvt>
#include <fstream>
#include <locale>
#include <string>
#include <vector>

#include "files/command_line.h"

namespace {

std::wstring wide(const std::string& utf8) {
    std::wstring_convert<std::codecvt_utf8<wchar_t>> converter;
    return converter.from_bytes(utf8);
}

std::vector<std::string> fieldsOf(const std::string& line) {
    std::vector<std::string> fields;
    for (size_t start = 0;;) {
        size_t tab = line.find('\t', start);
        fields.push_back(line.substr(start, tab - start));
        if (tab == std::string::npos) return fields;
        start = tab + 1;
    }
}

struct Count {
    int services = 0, withPath = 0, givenOtherwise = 0;
};

// Environment references stay as they are on both sides.
Count checkList(const std::string& name) {
    const std::string otherwise = "rules give: ";
    std::ifstream rows(QUILLON_TESTS "/" + name);
    REQUIRE(rows);
    Count count;
    for (std::string line; std::getline(rows, line);) {
        if (line.rfind('#', 0) == 0) continue;
        const std::vector<std::string> fields = fieldsOf(line);
        REQUIRE_MESSAGE(fields.size() == 5, line);
        ++count.services;
        if (fields[2].empty()) continue;
        ++count.withPath;
        bool isOther = fields[4].rfind(otherwise, 0) == 0;
        count.givenOtherwise += isOther;
        const std::string& expected = isOther ? fields[4].substr(otherwise.size()) : fields[3];
        CHECK_MESSAGE(files::GetFileNameFromCommandLine(wide(fields[2])) == wide(expected), line);
    }
    return count;
}

}  // namespace

TEST_CASE("image paths of Windows 2000 name their files") {
    Count count = checkList("fixtures/services-windows-2000.tsv");
    CHECK(count.services == 347);
    CHECK(count.withPath == 259);
    CHECK(count.givenOtherwise == 1);
}

TEST_CASE("image paths of Windows 10 name their files") {
    Count count = checkList("fixtures/services-windows-10.tsv");
    CHECK(count.services == 478);
    CHECK(count.withPath == 463);
    CHECK(count.givenOtherwise == 0);
}

TEST_CASE("image paths of a real Windows XP name their files") {
    Count count = checkList("data/services-xp.tsv");
    CHECK(count.services == 104);
    CHECK(count.withPath == 104);
    CHECK(count.givenOtherwise == 0);
}

TEST_CASE("image paths of a real Windows Server 2003 name their files") {
    Count count = checkList("data/services-2003.tsv");
    CHECK(count.services == 101);
    CHECK(count.withPath == 101);
    CHECK(count.givenOtherwise == 0);
}
