#include <cstring>
#include <string>

#include "failing.h"

// Windows 98 Second Edition.
IMITATED(DWORD, GetVersion)() {
    return 0xC0000A04;
}

IMITATED(BOOL, GetVersionExA)(OSVERSIONINFOA* info) {
    if (info->dwOSVersionInfoSize != sizeof *info) {
        recordFailure("GetVersionExA with a record of Windows NT", ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    info->dwMajorVersion = 4;
    info->dwMinorVersion = 10;
    info->dwBuildNumber = 0x040A08AE;
    info->dwPlatformId = VER_PLATFORM_WIN32_WINDOWS;
    ::lstrcpyA(info->szCSDVersion, " A ");
    return TRUE;
}

namespace {

std::string baseName(std::string path) {
    path.erase(0, path.find_last_of("\\/") + 1);
    for (char& letter : path)
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter + ('a' - 'A'));
    if (path.find('.') == std::string::npos) path += ".dll";
    return path;
}

// Null for a library that is not imitated: Windows 98 does not have it, or it is the program's own.
HMODULE imitationOf(const std::string& library) {
    std::string name = library;
    size_t point = name.rfind('.');
    if (point == std::string::npos || point < 2) return nullptr;
    return ::LoadLibraryA(name.replace(point - 2, 2, "98").c_str());
}

bool isInSystemFolder(const std::string& path) {
    char folder[MAX_PATH];
    UINT length = ::GetSystemDirectoryA(folder, sizeof folder);
    return path.find('\\') == std::string::npos || ::strnicmp(path.c_str(), folder, length) == 0;
}

// Whether Windows 98 would find it. What the program itself brings is found as ever.
bool exists(const char* path) {
    return imitationOf(baseName(path)) || !isInSystemFolder(path);
}

}  // namespace

IMITATED(HMODULE, GetModuleHandleA)(const char* name) {
    if (name && !exists(name)) {
        ::SetLastError(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    return ::GetModuleHandleA(name);
}

IMITATED(HMODULE, LoadLibraryA)(const char* name) {
    if (!exists(name)) {
        ::SetLastError(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    return ::LoadLibraryA(name);
}

IMITATED(FARPROC, GetProcAddress)(HMODULE module, const char* name) {
    char path[MAX_PATH] = "";
    ::GetModuleFileNameA(module, path, sizeof path);
    HMODULE imitation = imitationOf(baseName(path));
    return ::GetProcAddress(imitation ? imitation : module, name);
}

IMITATED(HANDLE, CreateFileA)
(const char* path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
 HANDLE model) {
    if ((share & FILE_SHARE_DELETE) || (flags & FILE_FLAG_BACKUP_SEMANTICS)) {
        recordFailure("CreateFileA with a flag of Windows NT", ERROR_INVALID_PARAMETER);
        return INVALID_HANDLE_VALUE;
    }
    return ::CreateFileA(path, access, share, security, disposition, flags, model);
}

IMITATED(BOOL, MoveFileExA)(const char*, const char*, DWORD) {
    recordMissing("MoveFileExA");
    return FALSE;
}

IMITATED(HANDLE, CreateThread)
(SECURITY_ATTRIBUTES* security, SIZE_T stack, LPTHREAD_START_ROUTINE start, void* parameter, DWORD flags,
 DWORD* identifier) {
    if (!identifier) {
        recordFailure("CreateThread without room for the identifier", ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    return ::CreateThread(security, stack, start, parameter, flags, identifier);
}
