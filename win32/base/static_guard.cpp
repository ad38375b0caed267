#include <atomic>
#include <cstdlib>

#include "win32/base/platform.h"

// What the compiler calls around the making of a function's static object, so that one thread makes it and
// others wait. From GCC 13 on the compiler's own runtime waits on a condition variable, which came with
// Windows Vista: the program would not even start on an older one. These three take its place, with either
// compiler.

namespace {

// The compiler sets 8 bytes of zeros aside for each object and looks at the first one itself.
struct Guard {
    std::atomic<char> made;
    std::atomic<DWORD> maker;  // the thread that makes the object now
};
static_assert(sizeof(Guard) == sizeof(long long));

Guard& guardIn(long long* bytes) {
    return *reinterpret_cast<Guard*>(bytes);
}

}  // namespace

extern "C" {

// 1 when the caller has to make the object, 0 when it has been made.
int __cxa_guard_acquire(long long* bytes) {
    Guard& guard = guardIn(bytes);
    const DWORD caller = ::GetCurrentThreadId();
    while (!guard.made) {
        DWORD maker = 0;
        if (guard.maker.compare_exchange_strong(maker, caller)) return 1;
        // The object needs itself to be made: waiting would have no end.
        if (maker == caller) std::abort();
        ::Sleep(1);
    }
    return 0;
}

// The maker stays: nobody who looked a moment too early takes the turn again.
void __cxa_guard_release(long long* guard) {
    guardIn(guard).made = 1;
}

// Its constructor threw: whoever comes next tries again.
void __cxa_guard_abort(long long* guard) {
    guardIn(guard).maker = 0;
}
}
