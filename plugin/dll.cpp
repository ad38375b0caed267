// What QLNCustom.dll exports.
#include "plugin/custom2.h"
#include "win32/com/dll/exports.h"

namespace {

const win32::ComClass classes[] = {
    {&CLSID_CCustom2, L"QLNCustom.CCustom2", win32::createObject<plugin::CCustom2>}};

const win32::ComModule module = {classes, 1, &LIBID_QLNCustom, 2, 1};

}  // namespace

const win32::ComModule& win32::moduleOfThisDll() {
    return module;
}
