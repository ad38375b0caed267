// Helmkit.dll.
#include "helmkit/classes.h"
#include "win32/com/dll/exports.h"

const win32::ComModule& win32::moduleOfThisDll() {
    return helmkit::comModule();
}
