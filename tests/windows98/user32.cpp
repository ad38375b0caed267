#include "failing.h"

// The control gets 16 bits of the flag.
IMITATED(BOOL, EnableWindow)(HWND window, BOOL enable) {
    return ::EnableWindow(window, static_cast<WORD>(enable));
}

namespace {

// The wide messages of the list view and the tab strip came with the common controls of Windows 2000; those
// of Windows 98 pass them on unanswered.
bool isWideMessage(UINT message) {
    switch (message) {
        case LVM_GETITEMW:
        case LVM_SETITEMW:
        case LVM_INSERTITEMW:
        case LVM_FINDITEMW:
        case LVM_GETSTRINGWIDTHW:
        case LVM_GETCOLUMNW:
        case LVM_SETCOLUMNW:
        case LVM_INSERTCOLUMNW:
        case LVM_GETITEMTEXTW:
        case LVM_SETITEMTEXTW:
        case TCM_GETITEMW:
        case TCM_SETITEMW:
        case TCM_INSERTITEMW:
            return true;
        default:
            return false;
    }
}

}  // namespace

IMITATED(LRESULT, SendMessageA)(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (isWideMessage(message)) {
        recordFailure("SendMessageA with a wide message", ERROR_INVALID_PARAMETER);
        return 0;
    }
    return ::SendMessageA(window, message, wParam, lParam);
}

// A record with the member that Windows Vista added is refused.
IMITATED(BOOL, SystemParametersInfoA)(UINT action, UINT number, void* data, UINT changes) {
    const UINT size98 = 340;
    if (action == SPI_GETNONCLIENTMETRICS && static_cast<NONCLIENTMETRICSA*>(data)->cbSize != size98) {
        recordFailure("SystemParametersInfoA with a record of Windows Vista", ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    return ::SystemParametersInfoA(action, number, data, changes);
}

// An edit control holds less than 64 KB.
IMITATED(BOOL, SetWindowTextA)(HWND window, const char* text) {
    char name[16] = "";
    ::GetClassNameA(window, name, sizeof name);
    if (text && ::lstrcmpiA(name, "Edit") == 0 && ::lstrlenA(text) > 0xFFFE) {
        recordFailure("SetWindowTextA with more than an edit control holds", ERROR_NOT_ENOUGH_MEMORY);
        return FALSE;
    }
    return ::SetWindowTextA(window, text);
}
