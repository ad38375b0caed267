// The addresses that a build is given, each as its own option.
#include "build_settings.h"

#include <doctest/doctest.h>

TEST_CASE("each address of a build is an option of its own") {
    CHECK(settings::homePage == L"http://home.example/");
    CHECK(settings::supportHost == L"support.example");
    CHECK(settings::portalPage == L"http://Portal.example/");
    CHECK(settings::downloadAddress(L"x.exe") == L"http://downloads.example/files\\x.exe");
}
