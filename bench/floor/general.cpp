#include "bench/floor/files.h"
#include "bench/floor/floors.h"
#include "bench/floor/registry.h"

namespace bench::floor {

namespace {

const struct {
    HKEY hive;
    const wchar_t* path;
} places[] = {
    {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run"},
    {HKEY_CURRENT_USER, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run"},
    {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServices"},
    {HKEY_CURRENT_USER, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServices"},
    {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce"},
    {HKEY_CURRENT_USER, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce"},
    {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce\\Setup"},
    {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServicesOnce"},
    {HKEY_CURRENT_USER, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServicesOnce"},
    {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\policies\\Explorer\\Run"},
    {HKEY_CURRENT_USER, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\policies\\Explorer\\Run"},
};

}  // namespace

std::vector<Row> readGeneral() {
    Files files;
    std::vector<Row> rows;
    for (const auto& place : places) {
        Key key(place.hive, place.path);
        for (const std::wstring& name : key.valueNames()) {
            const FileStrings& file = files.of(key.text(name));
            rows.push_back({file.description.empty() ? name : file.description, file.company, file.path,
                            place.hive, place.path, name, L"IE"});
        }
    }
    return rows;
}

}  // namespace bench::floor
