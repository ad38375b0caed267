#include "report/registry_places.h"

#include "startup/registry_places.h"

namespace report {

namespace {

std::wstring typeName(LONG type) {
    const wchar_t* const names[] = {L"REG_NONE",
                                    L"REG_SZ",
                                    L"REG_EXPAND_SZ",
                                    L"REG_BINARY",
                                    L"REG_DWORD",
                                    L"REG_DWORD_BIG_ENDIAN",
                                    L"REG_LINK",
                                    L"REG_MULTI_SZ",
                                    L"REG_RESOURCE_LIST",
                                    L"REG_FULL_RESOURCE_DESCRIPTOR",
                                    L"REG_RESOURCE_REQUIREMENTS_LIST",
                                    L"REG_QWORD"};
    const auto number = static_cast<ULONG>(type);
    return number < std::size(names) ? names[number] : std::to_wstring(number);
}

}  // namespace

startup::RegistryValueName libraryOf(const std::wstring& package) {
    return {helmkit::HKLM, std::wstring(startup::notifyKeyPath) + L'\\' + package, L"DLLName"};
}

startup::RegistryValueName imagePathOf(const std::wstring& service) {
    return {helmkit::HKLM, std::wstring(startup::servicesKeyPath) + L'\\' + service, L"ImagePath"};
}

std::wstring hiveName(LONG hive) {
    return hive == helmkit::HKLM ? L"HKEY_LOCAL_MACHINE" : L"HKEY_CURRENT_USER";
}

void setKey(Entry& entry, const RegistryKeyName& key) {
    entry.set(Field::hive, hiveName(key.hive)).set(Field::key, key.keyPath);
}

void setValue(Entry& entry, const startup::RegistryValueName& value) {
    setKey(entry, {value.hive, value.keyPath});
    entry.set(Field::value, value.valueName);
}

void setCommand(Entry& entry, helmkit::RegistryAccess& registry, const startup::RegistryValueName& value) {
    const LONG type = registry.ValueType(value.hive, value.keyPath, value.valueName);
    if (type == -1) return;
    entry.set(Field::command, registry.ReadValue(value.hive, value.keyPath, value.valueName).data);
    entry.set(Field::commandType, typeName(type));
}

}  // namespace report
