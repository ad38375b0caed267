#include "win32/files/folders.h"

#include "win32/base/flavour.h"
#include "win32/base/handle.h"
#include "win32/files/files.h"

namespace win32 {

bool holdsNormalFile(const std::wstring& folder) {
    if (!isExactName(folder)) return false;
    NoFileRedirection wholeSystem;
    return withFlavour([&]<class F>(F f) {
        typename F::FindData found;
        OwnedFind search(noneIfNull(f.findFirstFile(f.in(folder + L"*"), &found)));
        if (!search) return false;
        const DWORD notNormal = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
        do {
            if (!(found.dwFileAttributes & notNormal)) return true;
        } while (f.findNextFile(search.get(), &found));
        return false;
    });
}

}  // namespace win32
