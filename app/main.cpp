#include "app/FMain.h"
#include "helmkit/client/shared_services.h"
#include "win32/com/com.h"
#include "win32/system/desktop.h"
#include "win32/system/environment.h"
#include "win32/system/system.h"
#include "win32/windows/message_loop.h"

namespace {

// On 64-bit Windows a 32-bit program is told the folders of 32-bit programs; the startup entries are those of
// the whole system, so their environment references mean the others.
void useFoldersOfTheWholeSystem() {
    const struct {
        const wchar_t* own;
        const wchar_t* whole;
    } variables[] = {{L"ProgramFiles", L"ProgramW6432"}, {L"CommonProgramFiles", L"CommonProgramW6432"}};
    if (!win32::isRedirected()) return;
    for (const auto& variable : variables) {
        const std::wstring whole = win32::environmentVariable(variable.whole);
        if (!whole.empty()) win32::setEnvironmentVariable(variable.own, whole);
    }
}

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
    ::InitCommonControls();
    useFoldersOfTheWholeSystem();
    try {
        return runProgram();
    } catch (...) {
        // The window itself could not be made, and there is no log yet.
        const win32::Error error = win32::currentError();
        win32::desktop().messageBox(nullptr, error.description, L"Quillon", MB_ICONERROR);
        return 2;
    }
}
