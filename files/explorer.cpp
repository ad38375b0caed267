#include "files/explorer.h"

#include "win32/base/path.h"
#include "win32/base/text.h"
#include "win32/system/desktop.h"
#include "win32/system/system.h"

namespace files {

bool startExplorer(const std::wstring& argument) {
    return win32::desktop().startProgram(win32::withBackslash(win32::windowsFolder()) + L"explorer.exe",
                                         L"explorer " + argument);
}

}  // namespace files
