#include "files/explorer.h"

#include "win32/base/error.h"
#include "win32/base/path.h"
#include "win32/system/desktop.h"
#include "win32/system/system.h"

namespace files {

void startExplorer(const std::wstring& argument) {
    const std::wstring explorer = win32::withBackslash(win32::windowsFolder()) + L"explorer.exe";
    if (!win32::desktop().startProgram(explorer, L"explorer " + argument)) win32::raiseLastError(explorer);
}

}  // namespace files
