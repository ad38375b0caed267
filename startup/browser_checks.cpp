#include "startup/browser_checks.h"

#include "build_settings.h"
#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"
#include "win32/base/ascii.h"
#include "win32/base/path.h"
#include "win32/base/text.h"
#include "win32/system/desktop.h"

namespace startup {

namespace {

// The Windows folder is asked of the library here, where the lists take it from %windir%.
std::wstring inSystemFolder(const std::wstring& file) {
    std::wstring windows = win32::withBackslash(helmkit::systemServices().GetWindowsFolder());
    return win32::lowered(windows + (win32::isNtFamily() ? L"system32\\" : L"system\\") + file);
}

std::wstring expandedAndLowered(const std::wstring& path) {
    return win32::lowered(helmkit::systemServices().ExpandEnvironment(path));
}

Icon okIf(bool condition) {
    return condition ? Icon::protectedEntry : Icon::exclamation;
}

}  // namespace

Icon classServerCheck(helmkit::RegistryAccess& registry, const std::wstring& classId,
                      const std::wstring& dllName, std::wstring& server) {
    server = expandedAndLowered(
        registry.ReadValue(helmkit::HKCR, L"CLSID\\" + classId + L"\\InProcServer32", {}).data);
    return okIf(server == inSystemFolder(dllName));
}

Icon blankPageCheck(const std::wstring& path) {
    return okIf(expandedAndLowered(path) == inSystemFolder(L"blank.htm"));
}

Icon startPageCheck(const std::wstring& address, const std::wstring& portalPage) {
    const std::wstring lowered = win32::lowered(address);
    const size_t makerPrefix = 24;
    return okIf(lowered == L"about:blank" || lowered == win32::lowered(portalPage) ||
                win32::beginsWith(address, settings::homePage.substr(0, makerPrefix)) ||
                win32::beginsWith(address, L"res://mshtml.dll"));
}

}  // namespace startup
