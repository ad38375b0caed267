#include <doctest/doctest.h>

#include "support/form_encoding.h"
#include "support/zip_line_ends.h"
#include "support/zip_names.h"

using support::LineEnds;

TEST_CASE("four characters of a form value are encoded and no other") {
    CHECK((support::encodeFormValue(L"a\\b\\id") == L"a%5Cb%5Cid"));
    CHECK((support::encodeFormValue(L"+/=\r\n") == L"%2B/=%0D%0A"));
    CHECK((support::encodeFormValue(L"++\\\\") == L"%2B%2B%5C%5C"));
    const std::wstring untouched = L" &=/%%2B?#<>\"'\t\u00e9";
    CHECK((support::encodeFormValue(untouched) == untouched));
    CHECK(support::encodeFormValue(L"").empty());
}

TEST_CASE("a specification is looked for below the base path") {
    struct Row {
        std::wstring spec, folder, path;
    };
    const Row rows[] = {
        {L"a.txt", L"", L"a.txt"},
        {L"sub/a.txt", L"", L"sub\\a.txt"},
        {L"a.txt", L"C:\\base", L"C:\\base\\a.txt"},
        {L"a.txt", L"C:\\", L"C:\\a.txt"},
        {L"a.txt", L"C:/base/", L"C:\\base\\a.txt"},
        {L"D:\\x\\a.txt", L"C:\\base", L"D:\\x\\a.txt"},
        {L"\\\\server\\share\\a", L"C:\\base", L"\\\\server\\share\\a"},
        {L"\\x\\a.txt", L"C:\\base", L"C:\\x\\a.txt"},
        {L"\\x", L"\\\\server\\share\\base", L"\\\\server\\share\\x"},
        {L"..\\a", L"C:\\base", L"C:\\base\\..\\a"},
        {L"C:", L"D:\\base", L"C:"},
        {L"a", L"D:\\base", L"D:\\base\\a"},
        {L"ab", L"D:\\base", L"D:\\base\\ab"},
        {L"", L"D:\\base", L"D:\\base\\"},
        {L"\\", L"D:\\base", L"D:\\"},
        {L"/x", L"base", L"\\x"},
        {L"\\x", L"\\\\server\\share", L"\\\\server\\share\\x"},
        {L"\\x", L"\\\\server", L"\\\\server\\x"},
        {L"a\\\\b", L"D:\\base", L"D:\\base\\a\\\\b"},
    };
    for (const Row& row : rows) CHECK((support::resolvedPath(row.spec, row.folder) == row.path));
}

TEST_CASE("no name leads out of the folder that an archive is unpacked in") {
    struct Row {
        std::wstring path, bare, withFolders;
    };
    const Row rows[] = {
        {L"C:\\tmp\\a.xml", L"a.xml", L"tmp/a.xml"},
        {L"tmp\\sub/a.xml", L"a.xml", L"tmp/sub/a.xml"},
        {L"C:a.xml", L"a.xml", L"a.xml"},
        {L"\\\\server\\share\\x\\a", L"a", L"x/a"},
        {L"\\\\server\\share", L"share", L""},
        {L"..\\..\\a", L"a", L"a"},
        {L"one\\..\\..\\a", L"a", L"a"},
        {L"one\\two\\..\\.\\a", L"a", L"one/a"},
        {L"C:\\\\x\\\\a", L"a", L"x/a"},
        {L"\\\\server", L"server", L""},
        {L"\\\\server\\", L"", L""},
        {L"\\\\server\\share\\a", L"a", L"a"},
        {L"C:", L"", L""},
        {L"", L"", L""},
        {L"a", L"a", L"a"},
        {L"one\\two\\three\\..\\..\\a~b", L"a~b", L"one/a~b"},
        {L"...\\.a\\..b\\", L"", L".../.a/..b"},
    };
    for (const Row& row : rows) {
        CHECK((support::storedName(row.path, false) == row.bare));
        CHECK((support::storedName(row.path, true) == row.withFolders));
    }
}

TEST_CASE("a path's last part is what stands behind its last separator") {
    struct Row {
        std::wstring folder, name;
    };
    const Row rows[] = {{L"C:\\a\\", L"b.txt"}, {L"a/", L"b"}, {L"C:", L"b"},   {L"", L"b"},     {L"", L""},
                        {L"a\\", L""},          {L"", L"a~b"}, {L"C:\\", L"*"}, {L"a\\b/", L"c"}};
    for (const Row& row : rows) {
        CHECK((support::folderPart(row.folder + row.name) == row.folder));
        CHECK((support::namePart(row.folder + row.name) == row.name));
    }
    for (const wchar_t* text : {L"*", L"?", L"a*b", L"a?"}) CHECK(support::hasWildcard(text));
    for (const wchar_t* text : {L"", L"a", L"a~b"}) CHECK_FALSE(support::hasWildcard(text));
}

TEST_CASE("wildcards") {
    struct Row {
        std::wstring name, pattern;
        bool matches;
    };
    const Row rows[] = {
        {L"a.txt", L"*", true},
        {L"a.txt", L"*.*", true},
        {L"noextension", L"*.*", true},
        {L"a.txt", L"*.txt", true},
        {L"a.txt", L"?.txt", true},
        {L"ab.txt", L"?.txt", false},
        {L"a.txt", L"*.tx", false},
        {L"a.txt", L"a*t", true},
        {L"aXbXc", L"a*X*c", true},
        {L"aXbXd", L"a*X*c", false},
        {L"a.txt", L"a.txt*", true},
        {L"a.txt", L"", false},
        {L"", L"*", true},
        {L"", L"?", false},
        {L"sub/a.txt", L"*.txt", true},
        {L"aaab", L"*ab", true},
        {L"a.txt.bak", L"*.txt", false},
        {L"a", L"*?", true},
        {L"ab", L"*?*", true},
        {L"", L"*?*", false},
        {L"a", L"**", true},
        {L"abcabd", L"*abd", true},
        {L"abcabdx", L"*abd", false},
        {L"abab", L"ab", false},
        {L"ab", L"abab", false},
        {L"abcbc", L"a*bc", true},
        {L"xabcbc", L"a*bc", false},
        {L"a", L"*.*", true},
        {L"a", L"*.*~", false},
    };
    for (const Row& row : rows) {
        CAPTURE(&row - rows);
        CHECK(support::matchesPattern(row.name, row.pattern) == row.matches);
    }
}

TEST_CASE("line ends are the same whatever pieces the text comes in") {
    struct Row {
        std::string text, lf, crLf;
    };
    const Row rows[] = {
        {"", "", ""},
        {"a\r\nb\nc\rd", "a\nb\nc\rd", "a\r\nb\r\nc\rd"},
        {"\r\r\n\n\r", "\r\n\n\r", "\r\r\n\r\n\r"},
        {"\n", "\n", "\r\n"},
    };
    for (const Row& row : rows) {
        for (size_t size = 1; size <= row.text.size() + 1; ++size) {
            for (LineEnds how : {LineEnds::asTheyAre, LineEnds::crLfToLf, LineEnds::lfToCrLf}) {
                support::LineEndConverter converter(how);
                std::string result;
                for (size_t at = 0; at < row.text.size(); at += size) {
                    result += converter.convert(std::string_view(row.text).substr(at, size));
                }
                result += converter.finish();
                CHECK(result == (how == LineEnds::asTheyAre  ? row.text
                                 : how == LineEnds::crLfToLf ? row.lf
                                                             : row.crLf));
            }
        }
    }
}
