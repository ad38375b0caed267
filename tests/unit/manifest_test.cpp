// What the finished program tells Windows about itself before it runs.
#include <doctest/doctest.h>

#include <string>

#include "tests/support/text.h"
#include "win32/base/handle.h"
#include "win32/system/system.h"

namespace {

const wchar_t* const manifestType = MAKEINTRESOURCEW(24);

// The manifest of a file of the finished program folder, which stands beside the tests' own; empty without
// one.
std::string manifestOf(const std::wstring& name) {
    const std::wstring file = win32::moduleFolder(nullptr) + L"\\..\\program\\" + name;
    win32::OwnedModule module(::LoadLibraryExW(file.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    REQUIRE(module);
    HRSRC found = ::FindResourceW(module.get(), MAKEINTRESOURCEW(1), manifestType);
    if (!found) return {};
    auto* text = static_cast<const char*>(::LockResource(::LoadResource(module.get(), found)));
    return std::string(text, ::SizeofResource(module.get(), found));
}

size_t count(const std::string& text, const std::string& part) {
    size_t found = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
    return found;
}

}  // namespace

TEST_CASE("the program says which Windows it was made for, from Vista to 11") {
    const std::string manifest = manifestOf(L"Quillon.exe");
    const char* const systems[] = {
        "{e2011457-1546-43c5-a5fe-008deee3d3f0}",  // Vista
        "{35138b9a-5d96-4fbd-8e2d-a2440225f93a}",  // 7
        "{4a2f28e3-53b9-4441-ba9c-d69d4a4a6e38}",  // 8
        "{1f676c76-80e1-4239-95bb-83d0f6d0da78}",  // 8.1
        "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}",  // 10 and 11
    };
    for (const char* system : systems) {
        CAPTURE(system);
        CHECK(count(manifest, std::string("<supportedOS Id=\"") + system + "\"/>") == 1);
    }
    CHECK(count(manifest, "<supportedOS") == 5);
}

TEST_CASE("the program asks for the rights it has use for, so that Windows redirects none of its writing") {
    const std::string manifest = manifestOf(L"Quillon.exe");
    CHECK(count(manifest, "<requestedExecutionLevel level=\"highestAvailable\" uiAccess=\"false\"/>") == 1);
    CHECK(count(manifest, "requestedExecutionLevel") == 1);
}

TEST_CASE("the program follows the resolution of each monitor, by the old and the new word for it") {
    const std::string manifest = manifestOf(L"Quillon.exe");
    CHECK(count(manifest, ">true/pm</dpiAware>") == 1);
    CHECK(count(manifest, ">PerMonitorV2, PerMonitor</dpiAwareness>") == 1);
}

TEST_CASE("the program asks for the common controls with visual styles") {
    const std::string manifest = manifestOf(L"Quillon.exe");
    CHECK(count(manifest, "name=\"Microsoft.Windows.Common-Controls\" version=\"6.0.0.0\"") == 1);
    // Nothing chooses a dark look, and no code page: those of Windows stay.
    CHECK(count(manifest, "activeCodePage") == 0);
}

TEST_CASE("the program names the eight classes of its two components, which have no manifests of their own") {
    const std::string manifest = manifestOf(L"Quillon.exe");
    CHECK(count(manifest, "<comClass clsid=\"{") == 8);
    CHECK(count(manifest, "<file name=\"Helmkit.dll\">") == 1);
    CHECK(count(manifest, "<file name=\"QLNCustom.dll\">") == 1);
    for (const wchar_t* name : {L"Helmkit.dll", L"QLNCustom.dll"}) CHECK(manifestOf(name).empty());
}
