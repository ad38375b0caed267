#include "startup/ucRun.h"

#include "files/file_checksum.h"
#include "helmkit/client/registry_access.h"
#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"
#include "startup/enumeration.h"
#include "startup/protected_programs.h"
#include "startup/registry_places.h"
#include "win32/system/resources.h"

namespace startup {

namespace {

using helmkit::HKLM;

const CategoryDesign ownDesign = {.typeName = L"ucRun",
                                  .heading = L"Detected Startup Programs:",
                                  .columns = {L"Program Name", L"Manufacturer"},
                                  .note = L"Related File:",
                                  .button = L"&Delete From Startup",
                                  .iconField = IconField::icon,
                                  .messages = {.refusal = STRING_REFUSE_RUN}};

const std::wstring policyKey = policyKeyPath;

void addEntry(Enumeration& run, const RegistryValueName& value, const std::wstring& name,
              const std::wstring& file, const std::wstring& manufacturer) {
    run.list.add(
        {.entryName = value.valueName,
         .name = name,
         .file = file,
         .manufacturer = manufacturer,
         .icon = isProtectedProgram(file, manufacturer, run.folders) ? Icon::protectedEntry : Icon::ordinary,
         .value = value});
}

// The ordinary builder: the name falls back on the value's, whatever the file's other strings say.
void FillItemInfo(Enumeration& run, const RunKey& place) {
    for (const std::wstring& valueName : run.registry.EnumValues(place.hive, place.keyPath)) {
        run.entry([&] {
            const std::wstring command = run.readString(place.hive, place.keyPath, valueName);
            const std::wstring file =
                run.commands.resolveValue(run.registry, place.hive, place.keyPath, valueName, command);
            const FileDescription& description = run.descriptions.of(file);
            addEntry(run, {place.hive, place.keyPath, valueName}, description.description.value_or(valueName),
                     file, description.company);
        });
    }
}

// The builder for the policy key has a naming rule of its own and no error trap: an error in it ends the
// enumeration.
void fillPolicyItemInfo(Enumeration& run, LONG hive) {
    for (const std::wstring& valueName : run.registry.EnumValues(hive, policyKey)) {
        const RegistryValueName value = {hive, policyKey, valueName};
        const std::wstring command = run.readString(hive, policyKey, valueName);
        if (command.empty()) {
            addEntry(run, value, win32::loadString(STRING_NOT_SPECIFIED), {}, {});
            continue;
        }
        const std::wstring file =
            run.commands.resolveValue(run.registry, hive, policyKey, valueName, command);
        const FileDescription& description = run.descriptions.of(file);
        addEntry(run, value, description.nameOr(command), file, description.company);
    }
}

}  // namespace

ucRun::ucRun() : Category(ownDesign) {}

void ucRun::enumerate(Enumeration& run) const {
    for (const RunKey& place : runKeys) {
        run.place([&] { FillItemInfo(run, place); });
    }
    for (LONG hive : policyHives) fillPolicyItemInfo(run, hive);
}

Category::Deletion ucRun::deleteItem(const StartupItem& item, const std::wstring&,
                                     const helmkit::Logger&) const {
    const LONG hive = item.hive();
    const std::wstring keyPath = item.keyPath(), file = item.file();
    int32_t size = 0;
    const int32_t checksum = files::FileChecksum(file, size);
    const std::wstring line = helmkit::systemServices().FormatMessage(
        L"Deleting common(%1, '%2', '%3', %4, %5)",
        {hive == HKLM ? L"HKEY_LOCAL_MACHINE" : L"HKEY_CURRENT_USER", keyPath, file, std::to_wstring(size),
         std::to_wstring(checksum)});
    const LONG status = helmkit::RegistryAccess().DeleteValue(hive, keyPath, item.valueName());
    return {.succeeded = status == ERROR_SUCCESS, .logLine = line};
}

}  // namespace startup
