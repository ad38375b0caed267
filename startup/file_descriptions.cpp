#include "startup/file_descriptions.h"

#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"

namespace startup {

std::wstring FileDescription::nameOr(const std::wstring& fallback) const {
    if (description) return *description;
    return hasProductName ? productDescription : fallback;
}

const FileDescription& FileDescriptions::of(const std::wstring& fileName) {
    auto [entry, isNew] = known_.try_emplace(fileName);
    if (isNew && !commands_.isOutOfReach(fileName)) {
        auto info = helmkit::systemServices().GetFileVersionInfo(fileName);
        FileDescription& strings = entry->second;
        if (info.Exists(L"FileDescription")) strings.description = info.Item(L"FileDescription");
        strings.hasProductName = info.Exists(L"ProductName");
        strings.productDescription = info.Item(L"ProductDescription");
        strings.company = info.Item(L"CompanyName");
    }
    return entry->second;
}

}  // namespace startup
