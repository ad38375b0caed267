#include "files/windows_folders.h"

#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"
#include "win32/base/path.h"
#include "win32/base/text.h"
#include "win32/system/desktop.h"

namespace files {

WindowsFolders GetWindowsFolders() {
    const std::wstring winDir =
        win32::withBackslash(win32::lowered(helmkit::systemServices().ExpandEnvironment(L"%windir%")));
    return {winDir, winDir + (win32::isNtFamily() ? L"system32\\" : L"system\\")};
}

}  // namespace files
