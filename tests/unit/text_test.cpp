// Texts and errors as Windows tells them.
#include "win32/base/text.h"

#include <doctest/doctest.h>

#include <stdexcept>

#include "tests/support/raised.h"
#include "tests/support/replaced_import.h"
#include "tests/support/text.h"
#include "win32/base/error.h"
#include "win32/base/flavour.h"

namespace {

bool isAnsi() {
    return win32::flavour() == win32::Flavour::ansi;
}

// A description that ends as it is told, and what it was asked with.
std::wstring described;
struct {
    DWORD flags, code, language, room;
    bool hasSource, hasArguments;
} asked;

template <class Char>
DWORD WINAPI formatMessage(DWORD flags, const void* source, DWORD code, DWORD language, Char* text,
                           DWORD room, va_list* arguments) {
    asked = {flags, code, language, room, source != nullptr, arguments != nullptr};
    for (size_t i = 0; i < described.size(); ++i) text[i] = static_cast<Char>(described[i]);
    return static_cast<DWORD>(described.size());
}

LCID locale = 0;
DWORD how = 0;
int givenRoom = 0;
template <class Char>
int WINAPI mapString(LCID given, DWORD flags, const Char*, int size, Char* to, int room) {
    locale = given;
    how = flags;
    givenRoom = room;
    CHECK(size == room);
    to[0] = Char('m');
    return 1;
}
template <class Char>
int WINAPI mapNothing(LCID, DWORD, const Char*, int, Char*, int) {
    return 0;
}

template <class Thrown>
win32::Error toldOf(Thrown thrown) {
    try {
        throw thrown;
    } catch (...) {
        return win32::currentError();
    }
}

}  // namespace

TEST_CASE("texts go through the code page, and what it lacks is told") {
    CHECK(win32::toAnsi(L"") == "");
    CHECK(win32::toAnsi(L"plain") == "plain");
    CHECK(win32::toAnsi(L"\x7F") == "\x7F");
    const std::string umlaut = win32::toAnsi(L"a\xE4");
    CHECK(umlaut == "a\xE4");
    CHECK(win32::fromAnsi(umlaut) == L"a\xE4");
    CHECK(win32::fromAnsi("") == L"");
    CHECK(win32::fromAnsi(std::string("a\0b", 3)) == std::wstring(L"a\0b", 3));
    CHECK(win32::toAnsi(L"\x416") == "?");
    CHECK(win32::survivesAnsi(L"plain"));
    CHECK(win32::survivesAnsi(L"\xE4"));
    CHECK_FALSE(win32::survivesAnsi(L"\x416"));
    CHECK(win32::isExactName(L"plain"));
    CHECK(win32::isExactName(L"\xE4"));
    CHECK(win32::isExactName(L"\x416") == !isAnsi());
    CHECK_FALSE(win32::isExactName(std::wstring_view(L"a\0b", 3)));
}

TEST_CASE("bytes as characters and back; UTF-8") {
    const std::string bytes("a\0\x7F\x80\xFF", 5);
    CHECK(win32::bytesAsText(bytes) == std::wstring(L"a\0\x7F\x80\xFF", 5));
    CHECK(win32::textAsBytes(win32::bytesAsText(bytes)) == bytes);
    CHECK(win32::toUtf8(L"a\x416") == "a\xD0\x96");
}

TEST_CASE("lower case has fixed rules, of characters that the code page lacks only A to Z change") {
    CHECK(win32::lowered(L"AZ[I]az") == L"az[i]az");
    CHECK(win32::lowered(L"\xC4I") == L"\xE4i");
    CHECK(win32::lowered(L"\x416I") == (isAnsi() ? L"\x416i" : L"\x436i"));
    CHECK(win32::lowered(L"") == L"");
    CHECK(win32::sameIgnoringCase(L"A\xC4", L"a\xE4"));
    CHECK_FALSE(win32::sameIgnoringCase(L"ab", L"a"));
    CHECK_FALSE(win32::sameIgnoringCase(L"ab", L"ac"));
    CHECK(win32::sameIgnoringCase(L"", L""));
    {
        const ReplacedImport wideCall("LCMapStringW", &mapString<wchar_t>);
        const ReplacedImport ansiCall("LCMapStringA", &mapString<char>);
        CHECK(win32::lowered(L"\xC4xyz") == L"m");
        CHECK(locale == 0x0409);
        CHECK(how == (LCMAP_LOWERCASE | (isAnsi() ? LOCALE_USE_CP_ACP : 0)));
        CHECK(givenRoom == 4);
        locale = 0;
        CHECK(win32::lowered(L"XYZ") == L"xyz");
        CHECK(locale == 0);
    }
    const ReplacedImport wideCall("LCMapStringW", &mapNothing<wchar_t>);
    const ReplacedImport ansiCall("LCMapStringA", &mapNothing<char>);
    CHECK(win32::lowered(L"\xC4X") == L"\xC4x");
}

TEST_CASE("an error's description is the system's without its line break, else its number") {
    const ReplacedImport wideCall("FormatMessageW", &formatMessage<wchar_t>);
    const ReplacedImport ansiCall("FormatMessageA", &formatMessage<char>);
    described = L"Said in words. \r\n";
    CHECK(win32::systemDescription(5) == L"Said in words.");
    CHECK(asked.flags == (FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS));
    CHECK(asked.code == 5);
    CHECK(asked.language == 0);
    CHECK(asked.room == 512);
    CHECK_FALSE(asked.hasSource);
    CHECK_FALSE(asked.hasArguments);
    for (const wchar_t* end : {L" ", L"\r", L"\n", L"\n\r \n"}) {
        described = std::wstring(L"a b") + end;
        CHECK(win32::systemDescription(5) == L"a b");
    }
    for (const wchar_t* nothing : {L"", L" \r\n"}) {
        described = nothing;
        CHECK(win32::systemDescription(1234) == L"Error 1234");
    }
    described = L"words\r\n";
    ::SetLastError(ERROR_SEEK);
    const win32::Error last = raisedBy([] { win32::raiseLastError(L"what"); });
    CHECK(last.number == HRESULT_FROM_WIN32(ERROR_SEEK));
    CHECK(last.description == L"what: words");
    CHECK(raisedBy([] { win32::raiseWin32(ERROR_SEEK); }).description == L"words");
}

TEST_CASE("whatever was thrown is told by its kind") {
    CHECK(toldOf(win32::Error(7, L"words")).number == 7);
    CHECK(toldOf(win32::Error(7, L"words")).description == L"words");
    CHECK(toldOf(std::bad_alloc()).number == E_OUTOFMEMORY);
    CHECK(toldOf(std::bad_alloc()).description == L"Out of memory");
    CHECK(toldOf(std::runtime_error("words")).number == E_UNEXPECTED);
    CHECK(toldOf(std::runtime_error("words")).description == L"words");
    CHECK(toldOf(7).number == E_UNEXPECTED);
    CHECK(toldOf(7).description == L"Unexpected error");
    CHECK(std::string(win32::Error(7, {}).what()) == "win32::Error");
}
