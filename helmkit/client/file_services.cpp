#include "helmkit/client/file_services.h"

#include "win32/com/in_string.h"

namespace helmkit {

using win32::BString;
using win32::check;
using win32::InString;

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

void FileServices::WriteTextFile(const std::wstring& path, const BString& text) {
    check(object_->WriteTextFile(InString(path).get(), text.get()));
}

FileServices::Bytes FileServices::ReadFileBytes(const std::wstring& path) {
    Bytes bytes;
    check(object_->ReadFileBytes(InString(path).get(), &bytes.array));
    return bytes;
}

}  // namespace helmkit
