#include "startup/ucWinlogon.h"

#include "helmkit/client/registry_access.h"
#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"
#include "startup/enumeration.h"
#include "startup/protected_libraries.h"
#include "startup/registry_places.h"
#include "win32/system/resources.h"

namespace startup {

namespace {

using helmkit::HKLM;

const CategoryDesign ownDesign = {.typeName = L"ucWinlogon",
                                  .heading = L"Detected Startup Programs:",
                                  .columns = {L"Program Name", L"Manufacturer"},
                                  .note = L"Related File:",
                                  .button = L"&Delete From Startup",
                                  .messages = {.refusal = STRING_REFUSE_WINLOGON}};

const std::wstring notifyKey = notifyKeyPath;

const wchar_t* const events[] = {L"Lock",     L"Logoff",           L"Logon",
                                 L"Shutdown", L"StartScreenSaver", L"StartShell",
                                 L"Startup",  L"StopScreenSaver",  L"Unlock"};

std::wstring packageKey(const std::wstring& subkey) {
    return notifyKey + L"\\" + subkey;
}

EntryFields described(Enumeration& run, const std::wstring& subkey) {
    const std::wstring key = packageKey(subkey), valueName = L"DLLName";
    EntryFields entry = {.entryName = subkey, .icon = Icon::exclamation};
    const std::wstring dll = run.readString(HKLM, key, valueName);
    if (dll.empty()) {
        entry.name = win32::loadString(STRING_NOT_SPECIFIED);
        return entry;
    }
    entry.file = run.commands.resolveValue(run.registry, HKLM, key, valueName, dll);
    const FileDescription& description = run.descriptions.of(entry.file);
    entry.name = description.nameOr(dll);
    entry.manufacturer = description.company;
    if (isProtectedLibrary(entry.file, entry.manufacturer, run.folders.sysDir))
        entry.icon = Icon::protectedEntry;
    return entry;
}

}  // namespace

ucWinlogon::ucWinlogon() : Category(ownDesign) {}

void ucWinlogon::enumerate(Enumeration& run) const {
    for (const std::wstring& subkey : run.registry.EnumSubkeys(HKLM, notifyKey)) {
        run.entry([&] { run.list.add(described(run, subkey)); });
    }
}

Category::Deletion ucWinlogon::deleteItem(const StartupItem& item, const std::wstring& rowText,
                                          const helmkit::Logger&) const {
    const std::wstring line = helmkit::systemServices().FormatMessage(
        L"Deleting Winlogon('%1', '%2', '%3')", {item.entryName(), rowText, item.file()});
    const LONG status = helmkit::RegistryAccess().DeleteKey(HKLM, packageKey(item.entryName()));
    return {.succeeded = status == ERROR_SUCCESS, .logLine = line};
}

std::wstring ucWinlogon::eventsSummary(const std::wstring& subkey) {
    helmkit::RegistryAccess registry;
    std::wstring summary;
    for (const wchar_t* event : events) {
        if (registry.ValueType(HKLM, packageKey(subkey), event) >= 0) summary += std::wstring(event) + L", ";
    }
    return summary.substr(0, summary.empty() ? 0 : summary.size() - 2);
}

}  // namespace startup
