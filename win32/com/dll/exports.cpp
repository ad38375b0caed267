#include "win32/com/dll/exports.h"

#include "win32/com/com_registration.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    return win32::getClassObject(win32::moduleOfThisDll(), clsid, iid, object);
}

STDAPI DllCanUnloadNow() {
    return win32::canUnloadNow();
}

STDAPI DllRegisterServer() {
    return win32::registerModule(win32::moduleOfThisDll());
}

STDAPI DllUnregisterServer() {
    return win32::unregisterModule(win32::moduleOfThisDll());
}
