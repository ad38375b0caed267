#include "helmkit/client/system_services.h"

#include "win32/com/in_string.h"

namespace helmkit {

using win32::BString;
using win32::check;
using win32::ComPtr;
using win32::InString;
using win32::Variant;

namespace {

// A one-dimensional array of texts, as late-bound callers pass it too.
Variant arrayOf(const std::vector<std::wstring>& texts) {
    Variant result;
    SAFEARRAY* array = ::SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(texts.size()));
    if (!array) win32::raiseOutOfMemory();
    result.parray = array;
    result.vt = VT_ARRAY | VT_VARIANT;
    for (LONG i = 0; i < static_cast<LONG>(texts.size()); ++i) {
        Variant text(texts[i]);
        check(::SafeArrayPutElement(array, &i, &text));
    }
    return result;
}

}  // namespace

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

SystemServices::SystemServices()
    : object_(win32::create<ISystemServices>(CLSID_SystemServices, IID_ISystemServices)) {}

std::wstring SystemServices::FormatMessage(const std::wstring& text,
                                           const std::vector<std::wstring>& arguments) {
    BString result;
    check(object_->FormatMessage(InString(text).get(), arrayOf(arguments), result.out()));
    return result.text();
}

std::wstring SystemServices::ExpandEnvironment(const std::wstring& text) {
    BString result;
    check(object_->ExpandEnvironment(InString(text).get(), result.out()));
    return result.text();
}

VersionInfo SystemServices::GetFileVersionInfo(const std::wstring& path) {
    ComPtr<IVersionInfo> info;
    check(object_->GetFileVersionInfo(InString(path).get(), info.out()));
    return VersionInfo(info);
}

std::wstring SystemServices::GetWindowsFolder() {
    BString path;
    check(object_->GetWindowsFolder(path.out()));
    return path.text();
}

bool SystemServices::IsEmptyBytes(FileServices::Bytes& bytes) {
    VARIANT_BOOL empty = VARIANT_FALSE;
    check(object_->IsEmptyBytes(&bytes.array, &empty));
    return empty != VARIANT_FALSE;
}

std::wstring SystemServices::NewUniqueId() {
    BString id;
    check(object_->NewUniqueId(id.out()));
    return id.text();
}

std::wstring SystemServices::GetTempFolder() {
    BString path;
    check(object_->GetTempFolder(path.out()));
    return path.text();
}

std::wstring SystemServices::GetTempFileName(const std::wstring& prefix) {
    BString path;
    check(object_->GetTempFileName(InString(prefix).get(), path.out()));
    return path.text();
}

std::wstring SystemServices::XmlEscape(const std::wstring& text) {
    BString escaped;
    check(object_->XmlEscape(InString(text).get(), escaped.out()));
    return escaped.text();
}

std::wstring SystemServices::EncodeBinaryText(const std::wstring& bytes) {
    BString text;
    check(object_->EncodeBinaryText(InString(bytes).get(), text.out()));
    return text.text();
}

void SystemServices::PumpEvents() {
    check(object_->PumpEvents());
}

}  // namespace helmkit
