#include "app/component_check.h"

#include "helmkit.h"
#include "qlncustom.h"
#include "win32/com.h"

namespace app {

namespace {

bool canCreate(REFCLSID clsid) {
    win32::ComPtr<IUnknown> object;
    return SUCCEEDED(::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                        reinterpret_cast<void**>(object.out())));
}

}  // namespace

bool ComponentCheck(std::wstring& message) {
    const struct {
        const wchar_t* name;
        const CLSID& clsid;
        bool suggestReinstall;
    } components[] = {{L"Helmkit.dll", CLSID_SystemServices, true}, {L"QLNCustom.dll", CLSID_CCustom2, true}};
    for (const auto& component : components) {
        if (canCreate(component.clsid)) continue;
        message = L"Component '" + std::wstring(component.name) +
                  L"' or one of its dependencies not correctly registered: a file is missing or invalid.";
        if (component.suggestReinstall) message += L" Try to reinstall Quillon.";
        return false;
    }
    return true;
}

}  // namespace app
