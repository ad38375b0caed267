#include "bench/entries.h"

#include <algorithm>

#include "tests/support/registry_fixture.h"
#include "tests/support/versioned_file.h"

namespace bench {

namespace {

const std::wstring runKey = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
const std::wstring servicesKey = L"SYSTEM\\CurrentControlSet\\Services";

const wchar_t* const knownGood[] = {
    L"%SystemRoot%\\System32\\svchost.exe -k netsvcs", L"System32\\DRIVERS\\cdrom.sys",
    L"\\SystemRoot\\System32\\drivers\\afd.sys", L"%SystemRoot%\\system32\\spoolsv.exe"};

std::wstring numbered(const wchar_t* text, int number) {
    const std::wstring digits = std::to_wstring(number);
    return text + std::wstring(5 - std::min<size_t>(5, digits.size()), L'0') + digits;
}

// A quoted command line with arguments, as most of today's are.
std::wstring command(int number, const std::vector<std::wstring>& programs) {
    return L'"' + programs[number % programs.size()] + L"\" -start " + std::to_wstring(number);
}

}  // namespace

std::vector<std::wstring> makePrograms(const std::wstring& folder, int count) {
    std::vector<std::wstring> paths;
    for (int i = 0; i < count; ++i) {
        paths.push_back(folder + L"\\" + numbered(L"program", i) + L".exe");
        makeProgramFile(paths.back(), {{L"CompanyName", numbered(L"Company ", i % 40)},
                                       {L"FileDescription", numbered(L"The program number ", i)},
                                       {L"FileVersion", L"1.0.0.0"},
                                       {L"ProductName", L"Startup programs"}});
    }
    return paths;
}

std::vector<Value> runValues(int count, const std::vector<std::wstring>& programs) {
    std::vector<Value> values;
    for (int i = 0; i < count; ++i) {
        values.push_back({HKEY_LOCAL_MACHINE, runKey, numbered(L"Entry ", i), command(i, programs)});
    }
    return values;
}

std::vector<Value> serviceValues(int count, const std::vector<std::wstring>& programs) {
    std::vector<Value> values;
    for (int i = 0; i < count; ++i) {
        const std::wstring key = servicesKey + L"\\" + numbered(L"Service", i);
        const bool isKnownGood = i % 2 == 0;
        values.push_back({HKEY_LOCAL_MACHINE, key, L"ImagePath",
                          isKnownGood ? knownGood[i / 2 % std::size(knownGood)] : command(i / 2, programs)});
        values.push_back({HKEY_LOCAL_MACHINE, key, L"DisplayName", numbered(L"The service number ", i)});
    }
    return values;
}

void store(const std::vector<Value>& values) {
    for (const Value& value : values) {
        RegistryFixture::setString(value.hive, value.keyPath, value.name, value.data);
    }
}

}  // namespace bench
