#include "bench/floor/floors.h"
#include "bench/floor/registry.h"

namespace bench::floor {

namespace {

const wchar_t* const runKeys[] = {
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run",
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServices",
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce",
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServicesOnce",
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\policies\\Explorer\\Run",
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnceEx",
};
const wchar_t windowsKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Windows";
const wchar_t winlogonKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";

void append(std::string& bytes, const void* data, size_t size) {
    bytes.append(static_cast<const char*>(data), size);
}

void appendKey(std::string& bytes, HKEY root, const std::wstring& path) {
    Key key(root, path);
    if (!key.get()) return;
    wchar_t name[512];
    BYTE data[4096];
    DWORD length = 512, size = sizeof data, type = 0;
    for (DWORD i = 0; !::RegEnumValueW(key.get(), i, name, &length, nullptr, &type, data, &size); ++i) {
        append(bytes, name, length * sizeof(wchar_t));
        append(bytes, data, size);
        length = 512, size = sizeof data;
    }
    for (const std::wstring& child : key.subkeyNames()) appendKey(bytes, key.get(), child);
}

void appendValue(std::string& bytes, HKEY hive, const wchar_t* path, const wchar_t* name) {
    const std::wstring text = Key(hive, path).text(name);
    append(bytes, text.data(), text.size() * sizeof(wchar_t));
}

}  // namespace

void backup(const std::wstring& path) {
    std::string bytes;
    for (HKEY hive : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
        for (const wchar_t* key : runKeys) appendKey(bytes, hive, key);
        for (const wchar_t* name : {L"run", L"load"}) appendValue(bytes, hive, windowsKey, name);
    }
    appendKey(bytes, HKEY_LOCAL_MACHINE, std::wstring(winlogonKey) + L"\\Notify");
    for (const wchar_t* name : {L"shell", L"userinit", L"VmApplet", L"UIHost"}) {
        appendValue(bytes, HKEY_LOCAL_MACHINE, winlogonKey, name);
    }
    appendValue(bytes, HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\Session Manager",
                L"BootExecute");
    appendValue(bytes, HKEY_CURRENT_USER, L"Control Panel\\Desktop", L"SCRNSAVE.EXE");
    appendValue(bytes, HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Command Processor", L"AutoRun");
    HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    ::WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    ::CloseHandle(file);
}

}  // namespace bench::floor
