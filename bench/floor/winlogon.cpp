#include "bench/floor/files.h"
#include "bench/floor/floors.h"
#include "bench/floor/registry.h"

namespace bench::floor {

std::vector<Row> readWinlogon() {
    Files files;
    std::vector<Row> rows;
    Key notify(HKEY_LOCAL_MACHINE, L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify");
    for (const std::wstring& package : notify.subkeyNames()) {
        const std::wstring library = Key(notify.get(), package).text(L"DLLName");
        const FileStrings& file = files.of(library);
        rows.push_back({file.description.empty() ? library : file.description,
                        file.company,
                        file.path,
                        HKEY_LOCAL_MACHINE,
                        {},
                        package,
                        L"i"});
    }
    return rows;
}

}  // namespace bench::floor
