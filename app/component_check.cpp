#include "app/component_check.h"

#include "helmkit.h"
#include "qlncustom.h"
#include "win32/com/com.h"
#include "win32/files/files.h"
#include "win32/system/desktop.h"
#include "win32/system/system.h"

namespace app {

namespace {

struct Component {
    const wchar_t* name;
    const CLSID& clsid;
    bool suggestReinstall;
};
const Component components[] = {{L"Helmkit.dll", CLSID_SystemServices, true},
                                {L"QLNCustom.dll", CLSID_CCustom2, true}};

bool canCreate(REFCLSID clsid) {
    win32::ComPtr<IUnknown> object;
    return SUCCEEDED(::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                        reinterpret_cast<void**>(object.out())));
}

const Component* firstMissing() {
    for (const Component& component : components) {
        if (!canCreate(component.clsid)) return &component;
    }
    return nullptr;
}

// Windows XP reads the classes of a component from the program's manifest.
bool needsRegistration() {
    const bool isXpOrLater =
        win32::majorVersion() > 5 || (win32::majorVersion() == 5 && win32::minorVersion() > 0);
    return !win32::isNtFamily() || !isXpOrLater;
}

// Whether a program file is there; registering anything else would only fail once more.
bool isProgramFile(const std::wstring& path) {
    try {
        char mark[2] = {};
        return win32::FileReader(path).read(mark, 2) == 2 && mark[0] == 'M' && mark[1] == 'Z';
    } catch (const win32::Error&) {
        return false;
    }
}

}  // namespace

bool ComponentCheck(std::wstring& message) {
    const Component* missing = firstMissing();
    if (!missing) return true;
    message = L"Component '" + std::wstring(missing->name) +
              L"' or one of its dependencies not correctly registered: a file is missing or invalid.";
    if (missing->suggestReinstall) message += L" Try to reinstall Quillon.";
    return false;
}

std::wstring registrationAdvice() {
    const Component* missing = firstMissing();
    const std::wstring folder = win32::moduleFolder(nullptr);
    if (!missing || !needsRegistration() || !isProgramFile(folder + L'\\' + missing->name)) return {};
    std::wstring advice =
        L"The file is there, but this version of Windows has to be told of it. Open an MS-DOS or command "
        L"prompt in the folder\n" +
        folder + L"\nand run once:\n\n";
    for (const Component& component : components)
        advice += L"    regsvr32 " + std::wstring(component.name) + L"\n";
    return advice + L"\nThen start Quillon again.";
}

}  // namespace app
