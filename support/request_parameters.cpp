#include "support/request_parameters.h"

#include "win32/com/automation.h"

namespace support {

using win32::check;
using win32::ComPtr;

std::vector<ComPtr<IField>> parametersOf(IRecord* record) {
    std::vector<ComPtr<IField>> result;
    ComPtr<IUnknown> walker;
    check(record->get__NewEnum(walker.out()));
    auto items = walker.as<IEnumVARIANT>(IID_IEnumVARIANT);
    if (!items) win32::raise(E_NOINTERFACE, L"The parameters cannot be walked");
    win32::Variant item;
    while (items->Next(1, item.out(), nullptr) == S_OK) {
        ComPtr<IField> field;
        check(item.pdispVal->QueryInterface(IID_IField, reinterpret_cast<void**>(field.out())));
        result.push_back(field);
    }
    return result;
}

std::wstring nameOf(const ComPtr<IField>& parameter) {
    win32::BString name;
    check(parameter->get_Name(name.out()));
    return name.text();
}

LONG valueCount(const ComPtr<IField>& parameter) {
    LONG count{};
    check(parameter->get_Count(&count));
    return count;
}

std::wstring valueAt(const ComPtr<IField>& parameter, LONG position) {
    win32::Variant value;
    check(parameter->get_Item(position, value.out()));
    return win32::valueText(value);
}

}  // namespace support
