#include "tests/support/hostile_ground.h"

#include "startup/ucOther.h"
#include "startup/ucRun.h"
#include "win32/base/flavour.h"
#include "win32/base/utf16_bytes.h"
#include "win32/files/file_search.h"
#include "win32/files/files.h"
#include "win32/system/system.h"

namespace {

Snapshot withoutEmptyKeys(Snapshot all) {
    std::erase_if(all.keys, [](const auto& key) { return key.second.empty(); });
    return all;
}

}  // namespace

HostileGround::HostileGround() {
    removeKept();
    const std::wstring run = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
    registry.setString(HKEY_LOCAL_MACHINE, run, L"first", harmless);
    // The ANSI flavour loads the tables of its code page.
    registry.setString(HKEY_LOCAL_MACHINE, run, L"\x0416", L"\\\\.\\\x0416.exe");
    CHECK(listed(startup::ucRun()).size() == 2);
    CHECK(listed(startup::ucOther()).empty());
    snapshot();
    registry.deleteKey(HKEY_LOCAL_MACHINE, run);
}

std::wstring HostileGround::seen(const std::wstring& text) {
    return win32::flavour() == win32::Flavour::wide ? text : win32::fromAnsi(win32::toAnsi(text));
}

StoredValue HostileGround::seen(const StoredValue& value) {
    const bool isText = value.type == REG_SZ || value.type == REG_EXPAND_SZ || value.type == REG_MULTI_SZ;
    if (!isText || win32::flavour() == win32::Flavour::wide) return value;
    return {value.type, win32::bytesOf(seen(win32::unitsOf(value.data)))};
}

std::vector<std::wstring> HostileGround::keptFiles() {
    const std::wstring kept = win32::moduleFolder(nullptr) + L"\\Backup";
    std::vector<std::wstring> files;
    if (!win32::isFolder(kept)) return files;
    for (const auto& file : win32::filesIn(kept)) {
        if (file.name.find(L"Backup ") != 0) files.push_back(kept + L'\\' + file.name);
    }
    return files;
}

void HostileGround::removeKept() {
    for (const std::wstring& file : keptFiles()) win32::removeFile(file);
}

reg::File HostileGround::registryFile(const std::wstring& path) {
    const std::wstring header = L"\xFEFFWindows Registry Editor Version 5.00\r\n";
    const std::wstring text = win32::unitsOf(TempFolder::read(path));
    REQUIRE(text.compare(0, header.size(), header) == 0);
    return reg::read(text.substr(header.size()));
}

void HostileGround::checkExport(const reg::File& file, const Snapshot& stored) {
    Snapshot expected = withoutEmptyKeys(stored), exported = withoutEmptyKeys(snapshotOf(file));
    for (auto& [path, values] : expected.keys) {
        for (auto& [name, value] : values) value = seen(value);
    }
    CHECK(exported.keys.size() == expected.keys.size());
    for (const auto& [path, values] : expected.keys) {
        CAPTURE(path);
        for (const auto& [name, value] : values) {
            CAPTURE(name);
            CHECK(exported.keys[path].count(name));
            CHECK(exported.keys[path][name] == value);
        }
        CHECK(exported.keys[path].size() == values.size());
    }
}
