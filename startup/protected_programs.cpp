#include "startup/protected_programs.h"

#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"
#include "win32/base/path.h"
#include "win32/base/text.h"
#include "win32/system/desktop.h"

namespace startup {

namespace {

enum class Folder { system, windows, programFiles };
enum class Systems { all, ntFamily, windows9x };

const struct {
    const wchar_t* file;
    Folder folder;
    Systems systems;
} protectedPrograms[] = {
    {L"ctfmon.exe", Folder::system, Systems::all},
    {L"messenger\\msmsgs.exe", Folder::programFiles, Systems::all},
    {L"internat.exe", Folder::system, Systems::ntFamily},
    {L"powrprof.dll", Folder::system, Systems::windows9x},
    {L"scanregw.exe", Folder::windows, Systems::windows9x},
    {L"systray.exe", Folder::system, Systems::windows9x},
    {L"taskmon.exe", Folder::windows, Systems::windows9x},
    {L"mstask.exe", Folder::system, Systems::windows9x},
};

std::wstring programFilesFolder() {
    return win32::withBackslash(
        win32::lowered(helmkit::systemServices().ExpandEnvironment(L"%programfiles%")));
}

}  // namespace

bool isProtectedProgram(const std::wstring& fileName, const std::wstring& manufacturer,
                        const files::WindowsFolders& folders) {
    if (manufacturer != L"Microsoft Corporation") return false;
    const std::wstring lowered = win32::lowered(fileName);
    const Systems unlisted = win32::isNtFamily() ? Systems::windows9x : Systems::ntFamily;
    for (const auto& program : protectedPrograms) {
        if (program.systems == unlisted) continue;
        std::wstring folder = program.folder == Folder::system    ? folders.sysDir
                              : program.folder == Folder::windows ? folders.winDir
                                                                  : programFilesFolder();
        if (lowered == folder + program.file) return true;
    }
    return false;
}

}  // namespace startup
