#include "files/windows_folders.h"

#include "helmkit/client/client.h"
#include "win32/base/text.h"
#include "win32/system/desktop.h"

namespace files {

std::wstring withBackslash(std::wstring path) {
    if (path.empty() || path.back() != L'\\') path += L'\\';
    return path;
}

void GetWindowsFolders(std::wstring& winDir, std::wstring& sysDir) {
    winDir = withBackslash(win32::lowered(helmkit::systemServices().ExpandEnvironment(L"%windir%")));
    sysDir = winDir + (win32::isNtFamily() ? L"system32\\" : L"system\\");
}

}  // namespace files
