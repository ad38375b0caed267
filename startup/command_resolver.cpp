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
    std::wstring file = resolve(data);
    if (data.find(L'%') == std::wstring::npos || helmkit::fileServices().FileExists(file) ||
        registry.ValueType(hive, keyPath, valueName) != REG_EXPAND_SZ) {
        return file;
    }
    std::wstring expanded = resolve(helmkit::systemServices().ExpandEnvironment(data));
    return helmkit::fileServices().FileExists(expanded) ? expanded : file;
}

}  // namespace startup
