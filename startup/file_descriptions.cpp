#include "startup/file_descriptions.h"

#include "helmkit/client/file_services.h"
#include "helmkit/client/system_services.h"
#include "win32/base/platform.h"

namespace startup {

std::wstring FileDescription::nameOr(const std::wstring& fallback) const {
    if (description) return *description;
    return hasProductName ? productDescription : fallback;
}

std::wstring FileDescriptions::resolve(const std::wstring& command) {
    return checker_.GetFullFileNameFromShortFilename(checker_.GetFileNameFromCommandLine(command));
}

std::wstring FileDescriptions::resolveValue(helmkit::RegistryAccess& registry, LONG hive,
                                            const std::wstring& keyPath, const std::wstring& valueName,
                                            const std::wstring& data) {
    std::wstring file = resolve(data);
    if (data.find(L'%') == std::wstring::npos || helmkit::fileServices().FileExists(file) ||
        registry.ValueType(hive, keyPath, valueName) != REG_EXPAND_SZ) {
        return file;
    }
    std::wstring expanded = resolve(helmkit::systemServices().ExpandEnvironment(data));
    return helmkit::fileServices().FileExists(expanded) ? expanded : file;
}

const FileDescription& FileDescriptions::of(const std::wstring& fileName) {
    auto [entry, isNew] = known_.try_emplace(fileName);
    if (isNew) {
        auto info = helmkit::systemServices().GetFileVersionInfo(fileName);
        FileDescription& strings = entry->second;
        if (info.Exists(L"FileDescription")) {
            strings.description = std::make_unique<std::wstring>(info.Item(L"FileDescription"));
        }
        strings.hasProductName = info.Exists(L"ProductName");
        strings.productDescription = info.Item(L"ProductDescription");
        strings.company = info.Item(L"CompanyName");
    }
    return entry->second;
}

}  // namespace startup
