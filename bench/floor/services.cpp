#include "bench/floor/files.h"
#include "bench/floor/floors.h"
#include "bench/floor/registry.h"
#include "startup/known_good_image_paths.h"

namespace bench::floor {

namespace {

std::wstring expanded(const std::wstring& text) {
    if (text.find(L'%') == std::wstring::npos) return text;
    wchar_t buffer[1024];
    DWORD length = ::ExpandEnvironmentStringsW(text.c_str(), buffer, 1024);
    return length && length <= 1024 ? std::wstring(buffer, length - 1) : text;
}

}  // namespace

std::vector<Row> readServices() {
    Files files;
    std::vector<Row> rows;
    Key services(HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Services");
    for (const std::wstring& name : services.subkeyNames()) {
        Key service(services.get(), name);
        const std::wstring imagePath = service.text(L"ImagePath");
        if (imagePath.empty() || startup::IsKnownGoodImagePath(imagePath)) continue;
        const std::wstring displayName = service.text(L"DisplayName");
        const FileStrings& file = files.of(expanded(imagePath));
        rows.push_back({displayName.empty() ? file.description : displayName,
                        file.company,
                        file.path,
                        HKEY_LOCAL_MACHINE,
                        {},
                        name,
                        L"IE"});
    }
    return rows;
}

}  // namespace bench::floor
