// What QLNCustom.dll exports.
#include "plugin/custom2.h"
#include "win32/com_module.h"

namespace {

const win32::ComClass classes[] = {
    {&CLSID_CCustom2, L"QLNCustom.CCustom2", win32::createObject<plugin::CCustom2>}};

const win32::ComModule module = {classes, 1, &LIBID_QLNCustom, 2, 1};

}  // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    return win32::getClassObject(module, clsid, iid, object);
}

STDAPI DllCanUnloadNow() {
    return win32::canUnloadNow();
}

STDAPI DllRegisterServer() {
    return win32::registerModule(module);
}

STDAPI DllUnregisterServer() {
    return win32::unregisterModule(module);
}
