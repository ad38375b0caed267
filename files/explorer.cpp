#include "files/explorer.h"

#include "files/windows_folders.h"
#include "win32/system/desktop.h"
#include "win32/system/system.h"

namespace files {

bool startExplorer(const std::wstring& argument) {
    return win32::desktop().startProgram(withBackslash(win32::windowsFolder()) + L"explorer.exe",
                                         L"explorer " + argument);
}

}  // namespace files
