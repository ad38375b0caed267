#include <doctest/doctest.h>

#include <stdexcept>

#include "win32/base/handle.h"
#include "win32/base/platform.h"

namespace {

volatile LONG begun = 0, finished = 0;

struct SlowToMake {
    SlowToMake() {
        ::InterlockedIncrement(&begun);
        ::Sleep(200);
        ::InterlockedIncrement(&finished);
    }
};

// Gives back how many objects were finished when the caller had its own.
DWORD WINAPI useSlowObject(void*) {
    static SlowToMake object;
    return static_cast<DWORD>(finished);
}

DWORD exitCodeOf(HANDLE thread) {
    DWORD code = 0;
    REQUIRE(::WaitForSingleObject(thread, 20000) == WAIT_OBJECT_0);
    REQUIRE(::GetExitCodeThread(thread, &code));
    return code;
}

struct FailsAtFirst {
    explicit FailsAtFirst(int attempt) {
        if (attempt == 1) throw std::runtime_error("the first attempt");
    }
};

void useFailing(int& attempts) {
    static FailsAtFirst object(++attempts);
}

}  // namespace

TEST_CASE("a static object is made by one thread while the others wait") {
    DWORD id;
    win32::OwnedObject first(::CreateThread(nullptr, 0, useSlowObject, nullptr, 0, &id));
    win32::OwnedObject second(::CreateThread(nullptr, 0, useSlowObject, nullptr, 0, &id));
    CHECK(exitCodeOf(first.get()) == 1);
    CHECK(exitCodeOf(second.get()) == 1);
    CHECK(begun == 1);
}

TEST_CASE("a static object whose constructor threw is tried again, and then stays") {
    int attempts = 0;
    CHECK_THROWS_AS(useFailing(attempts), std::runtime_error);
    useFailing(attempts);
    useFailing(attempts);
    CHECK(attempts == 2);
}
