// What Helmkit.dll exports.
#include "helmkit/classes.h"

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    return win32::getClassObject(helmkit::comModule(), clsid, iid, object);
}

STDAPI DllCanUnloadNow() {
    return win32::canUnloadNow();
}

STDAPI DllRegisterServer() {
    return win32::registerModule(helmkit::comModule());
}

STDAPI DllUnregisterServer() {
    return win32::unregisterModule(helmkit::comModule());
}
