#include "startup/protected_libraries.h"

#include "win32/base/text.h"

namespace startup {

namespace {

const wchar_t* const libraries[] = {L"crypt32.dll",  L"cryptnet.dll", L"cscdll.dll",
                                    L"sclgntfy.dll", L"wlnotify.dll", L"wzcdlg.dll"};

}  // namespace

bool isProtectedLibrary(const std::wstring& fileName, const std::wstring& manufacturer,
                        const std::wstring& sysDir) {
    if (manufacturer != L"Microsoft Corporation") return false;
    const std::wstring lowered = win32::lowered(fileName);
    for (const wchar_t* library : libraries) {
        if (lowered == sysDir + library) return true;
    }
    return false;
}

}  // namespace startup
