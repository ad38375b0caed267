#include "startup/command_resolver.h"

#include "helmkit/client/file_services.h"
#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"

namespace startup {

std::wstring CommandResolver::resolve(const std::wstring& command) {
    return checker_.GetFullFileNameFromShortFilename(checker_.GetFileNameFromCommandLine(command));
}

std::wstring CommandResolver::resolveValue(helmkit::RegistryAccess& registry, LONG hive,
                                           const std::wstring& keyPath, const std::wstring& valueName,
                                           const std::wstring& data) {
    const std::wstring name = checker_.GetFileNameFromCommandLine(data);
    const std::wstring file = checker_.GetFullFileNameFromShortFilename(name);
    if (name.find(L'%') == std::wstring::npos || isFile(file) ||
        registry.ValueType(hive, keyPath, valueName) != REG_EXPAND_SZ) {
        return file;
    }
    const std::wstring expanded =
        checker_.GetFullFileNameFromShortFilename(helmkit::systemServices().ExpandEnvironment(name));
    return isFile(expanded) ? expanded : file;
}

bool CommandResolver::isFile(const std::wstring& path) {
    if (const auto known = isFile_.find(path); known != isFile_.end()) return known->second;
    const bool exists = !checker_.isOutOfReach(path) && helmkit::fileServices().FileExists(path);
    isFile_.emplace(path, exists);
    return exists;
}

}  // namespace startup
