#include "app/tools_menu.h"

#include "app/FAbout.h"
#include "app/trap.h"
#include "build_settings.h"
#include "files/explorer.h"
#include "helmkit/client/file_services.h"
#include "helmkit/client/registry_access.h"
#include "helmkit/client/shared_services.h"
#include "resources/messages.h"
#include "win32/base/error.h"
#include "win32/base/path.h"
#include "win32/system/desktop.h"

namespace app {

namespace {

// The companion tools by their rows in the menu; row 2 is a separator.
const struct {
    const wchar_t* product;
    const wchar_t* programFile;
} tools[] = {{L"Corvana", L"Corvana.exe"},
             {L"Teselin", L"Teselin.exe"},
             {nullptr, nullptr},
             {L"Morrowfen", L"Morrowfen.exe"}};

// The installed program, empty when it is not installed or its file is gone.
std::wstring installedProgram(const std::wstring& product, const std::wstring& programFile) {
    helmkit::RegistryAccess registry;
    std::wstring path =
        registry.ReadValue(helmkit::HKLM, L"SOFTWARE\\Mardelix\\" + product, L"InstallPath").data;
    if (path.empty()) return {};
    path = win32::withBackslash(path) + programFile;
    return helmkit::fileServices().FileExists(path) ? path : std::wstring();
}

}  // namespace

void mnuTandem_Click(HWND window, const helmkit::Logger& logger, unsigned index) {
    trapped(logger, L".mnuTandem_Click", [&] {
        const auto& tool = tools[index];
        if (!tool.product) return;
        const std::wstring program = installedProgram(tool.product, tool.programFile);
        if (!program.empty()) {
            // Quoted, so that no program is found at a blank inside a folder's name.
            const bool started = win32::desktop().startProgram(program, L"\"" + program + L"\"");
            if (!started) win32::raiseLastError(program);
            return;
        }
        resources::showMessage(window, STRING_TOOL_NOT_INSTALLED, resources::exclamation, {tool.product});
        const UINT ask = MB_ICONINFORMATION | MB_OKCANCEL;
        if (resources::showMessage(window, STRING_DOWNLOAD_TOOL, ask, {tool.product}) == IDOK) {
            files::startExplorer(settings::downloadAddress(tool.programFile));
        }
    });
}

void mnuAbout_Click(HWND window, const helmkit::Logger& logger) {
    trapped(logger, L".mnuAbout_Click",
            [&] { FAbout(window, [&] { mnuVisitWebsite_Click(logger); }).showModal(); });
}

void mnuVisitWebsite_Click(const helmkit::Logger& logger) {
    trapped(logger, L".mnuVisitWebsite_Click", [&] {
        try {
            files::startExplorer(settings::homePage);
        } catch (const win32::Error&) {
            // Nothing tells of a page that does not open, on purpose: the user sees it.
        }
    });
}

}  // namespace app
