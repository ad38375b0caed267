#include "bench/start_entries.h"

#include "bench/entries.h"
#include "bench/places.h"
#include "tests/support/temp_folder.h"
#include "win32/base/text.h"

namespace bench {

namespace {

// 18 places; half of the services are known good and are not listed.
const int runCount = 120, packageCount = 12, serviceCount = 100;

std::vector<Value> entries(const std::wstring& folder) {
    const auto programs = makePrograms(folder);
    std::vector<Value> values = runValues(runCount, programs);
    for (int i = 0; i < packageCount; ++i) {
        values.push_back({HKEY_LOCAL_MACHINE,
                          L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify\\package" +
                              std::to_wstring(i),
                          L"DLLName", programs[runCount + i]});
    }
    for (const auto& more : {serviceValues(serviceCount, programs), placeValues(folder)}) {
        values.insert(values.end(), more.begin(), more.end());
    }
    return values;
}

std::wstring quoted(const std::wstring& text) {
    std::wstring result = L"\"";
    for (wchar_t c : text) {
        if (c == L'"' || c == L'\\') result += L'\\';
        result += c;
    }
    return result + L'"';
}

}  // namespace

void writeStartEntries(const std::wstring& folder) {
    std::wstring text = L"REGEDIT4\r\n";
    for (const Value& value : entries(folder)) {
        const wchar_t* hive =
            value.hive == HKEY_LOCAL_MACHINE ? L"HKEY_LOCAL_MACHINE\\" : L"HKEY_CURRENT_USER\\";
        text += L"\r\n[" + (hive + value.keyPath) + L"]\r\n" + quoted(value.name) + L"=" +
                quoted(value.data) + L"\r\n";
    }
    TempFolder::write(folder + L"\\entries.reg", win32::toAnsi(text));
}

}  // namespace bench
