#include "tests/support/versioned_file.h"

#include <doctest/doctest.h>

#include "win32/base/platform.h"
#include "win32/system/system.h"

namespace {

// One node of a version block (VS_VERSIONINFO): length, value length, type, key, padding, value, children.
std::wstring node(const std::wstring& key, const std::wstring& value, WORD valueLength, bool isText,
                  const std::vector<std::wstring>& children = {}) {
    std::wstring units = {0, static_cast<wchar_t>(valueLength), static_cast<wchar_t>(isText)};
    auto pad = [&] {
        if (units.size() % 2) units += L'\0';
    };
    units += key + L'\0';
    pad();
    units += value;
    for (const std::wstring& child : children) {
        pad();
        units += child;
    }
    units[0] = static_cast<wchar_t>(units.size() * 2);
    return units;
}

std::wstring versionBlock(const VersionStrings& strings, const VersionNumbers& version) {
    std::vector<std::wstring> values;
    for (const auto& [name, text] : strings) {
        values.push_back(node(name, text + L'\0', static_cast<WORD>(text.size() + 1), true));
    }
    std::wstring fixedInfo(26, L'\0');  // VS_FIXEDFILEINFO
    fixedInfo[0] = 0x04BD;
    fixedInfo[1] = 0xFEEF;
    fixedInfo[3] = 1;
    // Each half of the version with its lower number first.
    fixedInfo[4] = version.second;
    fixedInfo[5] = version.first;
    fixedInfo[6] = version.fourth;
    fixedInfo[7] = version.third;
    const std::wstring table = node(L"040904b0", {}, 0, true, values);
    const std::wstring translation = node(L"Translation", {0x0409, 0x04B0}, 4, false);
    return node(
        L"VS_VERSION_INFO", fixedInfo, 52, false,
        {node(L"StringFileInfo", {}, 0, true, {table}), node(L"VarFileInfo", {}, 0, true, {translation})});
}

}  // namespace

void makeProgramFile(const std::wstring& path, const VersionStrings& strings, const VersionNumbers& version) {
    const std::wstring model = win32::moduleFolder(nullptr) + L"\\fixture_program.exe";
    REQUIRE(::CopyFileW(model.c_str(), path.c_str(), FALSE));
    if (strings.empty()) return;
    std::wstring block = versionBlock(strings, version);
    HANDLE update = ::BeginUpdateResourceW(path.c_str(), FALSE);
    REQUIRE(update);
    REQUIRE(::UpdateResourceW(update, MAKEINTRESOURCEW(16), MAKEINTRESOURCEW(1), 0x0409, block.data(),
                              static_cast<DWORD>(block.size() * 2)));
    REQUIRE(::EndUpdateResourceW(update, FALSE));
}
