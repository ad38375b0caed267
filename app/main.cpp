#include "app/FMain.h"
#include "helmkit/client/shared_services.h"
#include "win32/com/com.h"
#include "win32/registry/trusted_environment.h"
#include "win32/system/desktop.h"
#include "win32/system/process.h"
#include "win32/windows/message_loop.h"

namespace {

int runProgram() {
    win32::ComApartment com;
    struct ServicesOfTheRun {
        ~ServicesOfTheRun() { helmkit::releaseSharedServices(); }
    } services;
    app::FMain fMain;
    if (!fMain.Form_Initialize()) return 1;
    fMain.Form_Load();
    fMain.show();
    return win32::runMessageLoop([&](MSG& message) { return fMain.preview(message); });
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    win32::failWithoutBoxes();
    win32::useSystemLibrariesOnly();
    // Before anything reads the variables.
    win32::setTrustedEnvironment();
    ::InitCommonControls();
    try {
        return runProgram();
    } catch (...) {
        // The window itself could not be made, and there is no log yet.
        const win32::Error error = win32::currentError();
        win32::desktop().messageBox(nullptr, error.description, L"Quillon", MB_ICONERROR);
        return 2;
    }
}
