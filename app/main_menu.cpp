#include "app/main_menu.h"

#include "win32/windows/menu.h"

namespace app {

HMENU createMainMenu() {
    using Rows = std::vector<win32::MenuRow>;
    const win32::MenuRow separator = {.caption = L"-"};
    const Rows mnuFile = {{mnuRefresh, L"&Refresh"}, separator, {mnuExit, L"&Exit"}};
    const Rows mnuTandems = {{mnuTandem + 0, L"&Corvana"},
                             {mnuTandem + 1, L"&Teselin"},
                             separator,
                             {mnuTandem + 3, L"&Morrowfen"}};
    const Rows mnuTools = {{mnuBackup, L"&Backup Current Settings"},
                           {mnuRestore, L"&Restore..."},
                           separator,
                           {.caption = L"&More Parasite Removers", .rows = mnuTandems}};
    const Rows mnuHelp = {
        {mnuVisitWebsite, L"Quillon &Home Page"}, separator, {mnuAbout, L"&About Quillon..."}};
    return win32::createMenuBar({{.caption = L"&File", .rows = mnuFile},
                                 {.caption = L"&Tools", .rows = mnuTools},
                                 {.caption = L"&Help", .rows = mnuHelp}});
}

}  // namespace app
