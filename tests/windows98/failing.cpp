#include "failing.h"

extern "C" void recordFailure(const char* name, DWORD error) {
    HANDLE file = ::CreateFileA("C:\\windows98.log", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                nullptr, OPEN_ALWAYS, 0, nullptr);
    ::SetFilePointer(file, 0, nullptr, FILE_END);
    DWORD written = 0;
    ::WriteFile(file, name, static_cast<DWORD>(::lstrlenA(name)), &written, nullptr);
    ::WriteFile(file, "\n", 1, &written, nullptr);
    ::CloseHandle(file);
    ::SetLastError(error);
}

extern "C" void recordMissing(const char* name) {
    recordFailure(name, ERROR_CALL_NOT_IMPLEMENTED);
}
