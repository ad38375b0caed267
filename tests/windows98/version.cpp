#include "failing.h"

namespace {

// Stands for the resource's place in the file, which Windows 98 puts into the handle and reads at.
const DWORD placeOfResource = 0x1230;

}  // namespace

IMITATED(DWORD, GetFileVersionInfoSizeA)(const char* path, DWORD* handle) {
    DWORD size = ::GetFileVersionInfoSizeA(path, handle);
    if (!size) ::SetLastError(*path ? ERROR_BAD_FORMAT : ERROR_BAD_PATHNAME);
    if (size && handle) *handle = placeOfResource;
    return size;
}

IMITATED(BOOL, GetFileVersionInfoA)(const char* path, DWORD handle, DWORD size, void* block) {
    if (handle != placeOfResource) {
        recordFailure("GetFileVersionInfoA without the handle of the size", ERROR_BAD_FORMAT);
        return FALSE;
    }
    return ::GetFileVersionInfoA(path, 0, size, block);
}

IMITATED(BOOL, VerQueryValueA)(const void* block, const char* path, void** value, UINT* size) {
    if (!path) {
        recordFailure("VerQueryValueA without a path", ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    return ::VerQueryValueA(block, path, value, size);
}
