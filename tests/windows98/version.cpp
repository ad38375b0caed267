#include "failing.h"

IMITATED(DWORD, GetFileVersionInfoSizeA)(const char* path, DWORD* handle) {
    DWORD size = ::GetFileVersionInfoSizeA(path, handle);
    if (!size) ::SetLastError(*path ? ERROR_BAD_FORMAT : ERROR_BAD_PATHNAME);
    return size;
}

IMITATED(BOOL, VerQueryValueA)(const void* block, const char* path, void** value, UINT* size) {
    if (!path) {
        recordFailure("VerQueryValueA without a path", ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    return ::VerQueryValueA(block, path, value, size);
}
