// Where the Run-family entries, the Winlogon packages and the services stand in the registry.
#pragma once

#include "helmkit/client/registry_access.h"

namespace startup {

// The keys whose values are the general entries, in their order, and behind them the policy key of each of
// its hives.
struct RunKey {
    LONG hive;
    const wchar_t* keyPath;
};
inline constexpr RunKey runKeys[] = {
    {helmkit::HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run"},
    {helmkit::HKCU, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run"},
    {helmkit::HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServices"},
    {helmkit::HKCU, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServices"},
    {helmkit::HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce"},
    {helmkit::HKCU, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce"},
    {helmkit::HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce\\Setup"},
    {helmkit::HKLM, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServicesOnce"},
    {helmkit::HKCU, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunServicesOnce"},
};

inline constexpr LONG policyHives[] = {helmkit::HKLM, helmkit::HKCU};
inline constexpr wchar_t policyKeyPath[] =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\policies\\Explorer\\Run";

// The key whose subkeys are the Winlogon packages; each names its library in the value "DLLName".
inline constexpr wchar_t notifyKeyPath[] =
    L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\Notify";

// The key whose subkeys are the services and drivers; each names its program in the value "ImagePath".
inline constexpr wchar_t servicesKeyPath[] = L"SYSTEM\\CurrentControlSet\\Services";

}  // namespace startup
