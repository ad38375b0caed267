#include "app/main_menu.h"

#include "win32/windows/menu.h"

namespace app {

HMENU createMainMenu() {
    using Rows = std::vector<win32::MenuRow>;
    const Rows mnuFile = {{mnuRefresh, L"&Refresh"}, {0, L"-"}, {mnuExit, L"&Exit"}};
    const Rows mnuTandems = {{mnuTandem + 0, L"&Corvana"},
                             {mnuTandem + 1, L"&Teselin"},
                             {mnuTandem + 2, L"-"},
                             {mnuTandem + 3, L"&Morrowfen"}};
    const Rows mnuTools = {{mnuBackup, L"&Backup Current Settings"},
                           {mnuRestore, L"&Restore..."},
                           {0, L"-"},
                           {0, L"&More Parasite Removers", mnuTandems}};
    const Rows mnuHelp = {
        {mnuVisitWebsite, L"Quillon &Home Page"}, {0, L"-"}, {mnuAbout, L"&About Quillon..."}};
    return win32::createMenuBar({{0, L"&File", mnuFile}, {0, L"&Tools", mnuTools}, {0, L"&Help", mnuHelp}});
}

}  // namespace app
