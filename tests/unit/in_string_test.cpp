#include <doctest/doctest.h>

#include "win32/com/in_string.h"

TEST_CASE("a text for an [in] argument is a BSTR, short or long, and a variant of it can be copied") {
    for (size_t length : {0, 1, 7, 259, 260, 5000}) {
        std::wstring text(length, L'x');
        if (length > 2) text[length / 2] = L'\0';
        win32::InString argument(text);
        CHECK(::SysStringLen(argument.get()) == length);
        CHECK(win32::BString::view(argument.get()) == text);
        CHECK(argument.get()[length] == L'\0');
        VARIANT given = argument.variant();
        win32::Variant copy;
        REQUIRE(::VariantCopy(&copy, &given) == S_OK);
        CHECK(copy.bstrVal != argument.get());
        CHECK(win32::BString::view(copy.bstrVal) == text);
    }
}
