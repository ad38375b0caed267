// A Windows in which hostile entries stand among harmless ones.
#pragma once

#include "startup/category.h"
#include "tests/support/page_fixture.h"
#include "tests/support/registry_snapshot.h"

struct HostileGround : PageFixture {
    Variable loop{L"QUILLON_LOOP", L"%QUILLON_LOOP%"};
    helmkit::Logger logger = log.logger();
    // A program that a harmless entry starts.
    const std::wstring harmless = program(
        folder.file(L"harmless.exe"), {{L"FileDescription", L"A neighbour"}, {L"CompanyName", L"Its maker"}});

    // What the first listing loads for good is no leak of the later ones: it is done here.
    HostileGround();
    ~HostileGround() { removeKept(); }

    std::vector<startup::StartupItem> listed(const startup::Category& category) {
        return category.EnumItems(logger).items();
    }
    // The entry starts `harmless`, and the list says so.
    void checkHarmless(const startup::Category& category, const startup::StartupItem& item) const {
        const startup::ListedRow row = listedRow(category.design(), item);
        CHECK(row.text == L"A neighbour");
        CHECK(row.second == L"Its maker");
        CHECK(win32::sameIgnoringCase(row.file, harmless));
        CHECK(item.icon() != startup::Icon::protectedEntry);
    }
    // One hostile entry as it is listed: its maker is nobody, it is not protected.
    static void checkHostile(const startup::Category& category, const startup::StartupItem& item,
                             const std::wstring& text, const std::wstring& file) {
        const startup::ListedRow row = listedRow(category.design(), item);
        CHECK(row.text == text);
        CHECK(row.second == L"Not specified");
        CHECK(row.file == file);
        CHECK(item.icon() != startup::Icon::protectedEntry);
    }

    // A text or data as this flavour sees it: the ANSI one through the code page.
    static std::wstring seen(const std::wstring& text);
    static StoredValue seen(const StoredValue& value);

    // What is kept of custom places, beside the tests' program.
    static std::vector<std::wstring> keptFiles();
    static void removeKept();

    // A file of the form of the backup.
    static reg::File registryFile(const std::wstring& path);
    // An export holds exactly what is stored; a key without values is no loss.
    static void checkExport(const reg::File& file, const Snapshot& stored);
};
