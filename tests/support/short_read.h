// A file that is shorter than it was said to be.
#pragma once

#include "tests/support/replaced_import.h"

// While it lives, reading gives so many bytes more, and then none.
class ShortRead {
  public:
    explicit ShortRead(DWORD readable) { readable_ = readable; }

  private:
    static inline DWORD readable_ = 0;
    static inline BOOL(WINAPI* real_)(HANDLE, void*, DWORD, DWORD*, OVERLAPPED*) = nullptr;
    static BOOL WINAPI read(HANDLE file, void* bytes, DWORD count, DWORD* read, OVERLAPPED* overlapped) {
        const BOOL done = real_(file, bytes, count < readable_ ? count : readable_, read, overlapped);
        readable_ -= *read;
        return done;
    }

    ReplacedImport call_{"ReadFile", &read, real_};
};
