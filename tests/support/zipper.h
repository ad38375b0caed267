// The zip writer over a folder of the test's own.
#pragma once

#include <string>
#include <vector>

#include <doctest/doctest.h>

#include "support/cZip.h"
#include "tests/support/temp_folder.h"
#include "tests/support/text.h"
#include "tests/support/zip_listing.h"
#include "win32/base/error.h"

struct Zipper {
    TempFolder folder;
    support::cZip zip;
    std::wstring archive = folder.file(L"archive.zip");

    Zipper() { zip.ZipFile = archive; }

    std::wstring file(const std::wstring& name, const std::string& content = "text", DWORD attributes = 0) {
        TempFolder::write(folder.file(name), content);
        if (attributes) REQUIRE(::SetFileAttributesW(folder.file(name).c_str(), attributes));
        return folder.file(name);
    }
    std::vector<ZipEntry> entries() const { return entriesOf(TempFolder::read(archive)); }
    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const ZipEntry& entry : entries()) result.push_back(entry.name);
        return result;
    }
    // The number of what Zip throws, 0 for nothing.
    long failure() {
        try {
            zip.Zip();
            return 0;
        } catch (const win32::Error& error) {
            return error.number;
        }
    }
};

inline long win32Failure(DWORD code) {
    return HRESULT_FROM_WIN32(code);
}
