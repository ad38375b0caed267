#include "helmkit/client/registry_access.h"

#include <iterator>

#include "win32/com/in_string.h"

namespace helmkit {

using win32::BString;
using win32::check;
using win32::ComPtr;
using win32::InString;
using win32::Variant;

namespace {

std::vector<std::wstring> texts(const ComPtr<IKeyedList>& list) {
    std::vector<std::wstring> result;
    ComPtr<IUnknown> walker;
    check(list->get__NewEnum(walker.out()));
    auto items = walker.as<IEnumVARIANT>(IID_IEnumVARIANT);
    if (!items) win32::raise(E_NOINTERFACE, L"The list cannot be walked");
    for (;;) {
        Variant batch[64];
        ULONG fetched;
        check(items->Next(std::size(batch), batch, &fetched));
        for (ULONG i = 0; i < fetched; ++i) result.emplace_back(BString::view(batch[i].bstrVal));
        if (fetched < std::size(batch)) return result;
    }
}

}  // namespace

RegistryAccess::RegistryAccess()
    : object_(win32::create<IRegistryAccess>(CLSID_RegistryAccess, IID_IRegistryAccess)) {}

RegistryAccess::Value RegistryAccess::ReadValue(LONG hive, const std::wstring& keyPath,
                                                const std::wstring& valueName) {
    Value value;
    BString data;
    check(object_->ReadValue(hive, InString(keyPath).get(), InString(valueName).get(), data.out(),
                             &value.status));
    value.data = data.text();
    return value;
}

LONG RegistryAccess::ValueType(LONG hive, const std::wstring& keyPath, const std::wstring& valueName) {
    LONG type{};
    check(object_->ValueType(hive, InString(keyPath).get(), InString(valueName).get(), &type));
    return type;
}

LONG RegistryAccess::WriteValue(LONG hive, const std::wstring& keyPath, const std::wstring& valueName,
                                const std::wstring& data) {
    LONG status{};
    check(object_->WriteValue(hive, InString(keyPath).get(), InString(valueName).get(), InString(data).get(),
                              &status));
    return status;
}

LONG RegistryAccess::DeleteValue(LONG hive, const std::wstring& keyPath, const std::wstring& valueName) {
    LONG status{};
    check(object_->DeleteValue(hive, InString(keyPath).get(), InString(valueName).get(), &status));
    return status;
}

LONG RegistryAccess::DeleteKey(LONG hive, const std::wstring& keyPath) {
    LONG status{};
    check(object_->DeleteKey(hive, InString(keyPath).get(), &status));
    return status;
}

std::vector<std::wstring> RegistryAccess::EnumSubkeys(LONG hive, const std::wstring& keyPath) {
    ComPtr<IKeyedList> names;
    check(object_->EnumSubkeys(hive, InString(keyPath).get(), names.out()));
    return texts(names);
}

std::vector<std::wstring> RegistryAccess::EnumValues(LONG hive, const std::wstring& keyPath) {
    ComPtr<IKeyedList> names;
    check(object_->EnumValues(hive, InString(keyPath).get(), names.out()));
    return texts(names);
}

BString RegistryAccess::ExportKey(LONG hive, const std::wstring& keyPath) {
    BString path(keyPath), text;
    BSTR inAndOut = path.release();
    HRESULT result = object_->ExportKey(&hive, &inAndOut, text.out());
    *path.out() = inAndOut;
    check(result);
    return text;
}

BString RegistryAccess::ExportValue(LONG hive, const std::wstring& keyPath, const std::wstring& valueName) {
    BString text;
    check(object_->ExportValue(hive, InString(keyPath).get(), InString(valueName).get(), text.out()));
    return text;
}

}  // namespace helmkit
