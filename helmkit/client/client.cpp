#include "helmkit/client/client.h"

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
    Variant batch[64];
    ULONG fetched = 0;
    do {
        check(items->Next(64, batch, &fetched));
        for (ULONG i = 0; i < fetched; ++i) {
            result.emplace_back(BString::view(batch[i].bstrVal));
            ::VariantClear(&batch[i]);
        }
    } while (fetched == 64);
    return result;
}

std::unique_ptr<FileServices> sharedFileServices;
std::unique_ptr<SystemServices> sharedSystemServices;

}  // namespace

Logger Logger::create() {
    return Logger(ComPtr<IDispatch>(win32::create<ILogWriter>(CLSID_LogWriter, IID_ILogWriter).get()));
}

void Logger::OpenLogs(const std::wstring& fullLog, const std::wstring& shortLog) const {
    auto writer = object_.as<ILogWriter>(IID_ILogWriter);
    if (!writer) win32::raise(E_NOINTERFACE, L"The logger opens no logs");
    check(writer->OpenLogs(InString(fullLog).get(), InString(shortLog).get()));
}

void Logger::WriteLog(LONG code, const std::wstring& text, LONG level, const std::wstring& source) const {
    if (!object_) win32::raise(E_POINTER, L"There is no logger");
    if (auto writer = object_.as<ILogWriter>(IID_ILogWriter)) {
        check(writer->WriteLog(code, InString(text).get(), level, InString(source).get()));
        return;
    }
    Variant arguments[] = {Variant(code), Variant(text), Variant(level), Variant(source)};
    win32::invoke(object_.get(), L"WriteLog", arguments, 4);
}

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
    LONG type = -1;
    check(object_->ValueType(hive, InString(keyPath).get(), InString(valueName).get(), &type));
    return type;
}

LONG RegistryAccess::WriteValue(LONG hive, const std::wstring& keyPath, const std::wstring& valueName,
                                const std::wstring& data) {
    LONG status = 0;
    check(object_->WriteValue(hive, InString(keyPath).get(), InString(valueName).get(), InString(data).get(),
                              &status));
    return status;
}

LONG RegistryAccess::DeleteValue(LONG hive, const std::wstring& keyPath, const std::wstring& valueName) {
    LONG status = 0;
    check(object_->DeleteValue(hive, InString(keyPath).get(), InString(valueName).get(), &status));
    return status;
}

LONG RegistryAccess::DeleteKey(LONG hive, const std::wstring& keyPath) {
    LONG status = 0;
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

std::wstring RegistryAccess::ExportKey(LONG hive, const std::wstring& keyPath) {
    BString path(keyPath), text;
    BSTR inAndOut = path.release();
    HRESULT result = object_->ExportKey(&hive, &inAndOut, text.out());
    *path.out() = inAndOut;
    check(result);
    return text.text();
}

std::wstring RegistryAccess::ExportValue(LONG hive, const std::wstring& keyPath,
                                         const std::wstring& valueName) {
    BString text;
    check(object_->ExportValue(hive, InString(keyPath).get(), InString(valueName).get(), text.out()));
    return text.text();
}

FileServices::FileServices() : object_(win32::create<IFileServices>(CLSID_FileServices, IID_IFileServices)) {}

void FileServices::CreateFolder(const std::wstring& path) {
    check(object_->CreateFolder(InString(path).get()));
}

bool FileServices::FileExists(const std::wstring& path) {
    VARIANT_BOOL exists = VARIANT_FALSE;
    check(object_->FileExists(InString(path).get(), &exists));
    return exists != VARIANT_FALSE;
}

BString FileServices::ReadTextFile(const std::wstring& path) {
    BString text;
    check(object_->ReadTextFile(InString(path).get(), text.out()));
    return text;
}

void FileServices::WriteTextFile(const std::wstring& path, const std::wstring& text) {
    check(object_->WriteTextFile(InString(path).get(), InString(text).get()));
}

FileServices::Bytes FileServices::ReadFileBytes(const std::wstring& path) {
    Bytes bytes;
    check(object_->ReadFileBytes(InString(path).get(), &bytes.array));
    return bytes;
}

bool VersionInfo::Exists(const std::wstring& name) const {
    VARIANT_BOOL present = VARIANT_FALSE;
    check(object_->Exists(InString(name).get(), &present));
    return present != VARIANT_FALSE;
}

std::wstring VersionInfo::Item(const std::wstring& name) const {
    BString text;
    check(object_->get_Item(InString(name).get(), text.out()));
    return text.text();
}

FileServices& fileServices() {
    if (!sharedFileServices) sharedFileServices = std::make_unique<FileServices>();
    return *sharedFileServices;
}

SystemServices& systemServices() {
    if (!sharedSystemServices) sharedSystemServices = std::make_unique<SystemServices>();
    return *sharedSystemServices;
}

void releaseSharedServices() {
    sharedFileServices.reset();
    sharedSystemServices.reset();
}

}  // namespace helmkit
