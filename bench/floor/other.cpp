#include <cwchar>
#include <string_view>

#include "bench/floor/floors.h"
#include "bench/floor/registry.h"

namespace bench::floor {

namespace {

const wchar_t windowsKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Windows";
const wchar_t winlogonKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
const wchar_t runOnceExKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx";
const wchar_t shellFoldersKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

const struct {
    HKEY hive;
    const wchar_t *key, *value;
} registryPlaces[] = {
    {HKEY_CURRENT_USER, windowsKey, L"run"},
    {HKEY_LOCAL_MACHINE, windowsKey, L"run"},
    {HKEY_CURRENT_USER, windowsKey, L"load"},
    {HKEY_LOCAL_MACHINE, windowsKey, L"load"},
    {HKEY_LOCAL_MACHINE, winlogonKey, L"shell"},
    {HKEY_LOCAL_MACHINE, winlogonKey, L"userinit"},
    {HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\Session Manager", L"BootExecute"},
    {HKEY_CURRENT_USER, L"Control Panel\\Desktop", L"SCRNSAVE.EXE"},
    {HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Command Processor", L"AutoRun"},
    {HKEY_LOCAL_MACHINE, winlogonKey, L"VmApplet"},
    {HKEY_LOCAL_MACHINE, winlogonKey, L"UIHost"},
};

void add(std::vector<Row>& rows, const std::wstring& value) {
    if (!value.empty()) rows.push_back({L"place", value, {}, nullptr, {}, {}, L"i"});
}

std::string readFile(const std::wstring& path) {
    std::string bytes;
    HANDLE file = ::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return bytes;
    bytes.resize(::GetFileSize(file, nullptr));
    DWORD got = 0;
    ::ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &got, nullptr);
    ::CloseHandle(file);
    return bytes;
}

char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool beginsWith(const char* at, const char* end, std::string_view key) {
    if (static_cast<size_t>(end - at) < key.size()) return false;
    for (char expected : key) {
        if (lowered(*at++) != expected) return false;
    }
    return true;
}

// The text after the first line that begins with each key, in one pass.
void findLines(const std::string& text, const std::string_view* keys, std::wstring* values, int count) {
    const char *at = text.data(), *end = at + text.size();
    while (at != end) {
        while (at != end && *at == ' ') ++at;
        const char* begin = at;
        while (at != end && *at != '\r' && *at != '\n') ++at;
        for (int i = 0; i < count; ++i) {
            if (values[i].empty() && beginsWith(begin, at, keys[i]))
                values[i].assign(begin + keys[i].size(), at);
        }
        if (at != end) ++at;
    }
}

bool holdsFile(const std::wstring& folder) {
    WIN32_FIND_DATAW data;
    HANDLE search = ::FindFirstFileW((folder + L"\\*").c_str(), &data);
    if (search == INVALID_HANDLE_VALUE) return false;
    bool found = false;
    do {
        const DWORD excluded = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
        found = !(data.dwFileAttributes & excluded);
    } while (!found && ::FindNextFileW(search, &data));
    ::FindClose(search);
    return found;
}

}  // namespace

std::wstring windowsFolder() {
    wchar_t folder[MAX_PATH];
    DWORD length = ::GetEnvironmentVariableW(L"windir", folder, MAX_PATH);
    return std::wstring(folder, length) + L"\\";
}

std::vector<Row> readOther() {
    std::vector<Row> rows;
    for (const auto& place : registryPlaces) add(rows, Key(place.hive, place.key).text(place.value));
    const std::string_view winIniKeys[] = {"load=", "run="}, systemIniKeys[] = {"shell="};
    std::wstring lines[3];
    findLines(readFile(windowsFolder() + L"win.ini"), winIniKeys, lines, 2);
    findLines(readFile(windowsFolder() + L"system.ini"), systemIniKeys, lines + 2, 1);
    for (const std::wstring& line : lines) add(rows, line);
    const std::wstring several = L"One or more startups";
    for (HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        if (!Key(hive, runOnceExKey).subkeyNames().empty()) add(rows, several);
    }
    for (HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        const wchar_t* value = hive == HKEY_LOCAL_MACHINE ? L"Common Startup" : L"Startup";
        if (holdsFile(Key(hive, shellFoldersKey).text(value))) add(rows, several);
    }
    return rows;
}

}  // namespace bench::floor
