// A library that somebody planted: it tells that it was loaded, by its path in a file, and offers nothing.
#include <cwchar>

#include "win32/base/platform.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
    if (reason != DLL_PROCESS_ATTACH) return TRUE;
    wchar_t path[1000];
    DWORD written = 0;
    const DWORD length = ::GetModuleFileNameW(module, path, 998);
    path[length] = L'\n';
    HANDLE file = ::CreateFileW(L"C:\\planted.log", FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                nullptr, OPEN_ALWAYS, 0, nullptr);
    ::WriteFile(file, path, (length + 1) * sizeof(wchar_t), &written, nullptr);
    ::CloseHandle(file);
    return TRUE;
}
