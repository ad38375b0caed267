#include <doctest/doctest.h>

#include <cstdint>
#include <cstring>

#include "win32/base/handle.h"
#include "win32/system/system.h"

extern "C" uintptr_t __stack_chk_guard;

namespace {

DWORD exitCodeOf(std::wstring commandLine) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    REQUIRE(::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                             &startup, &process));
    win32::OwnedObject thread(process.hThread), owned(process.hProcess);
    DWORD code = 0;
    REQUIRE(::WaitForSingleObject(owned.get(), 60000) == WAIT_OBJECT_0);
    REQUIRE(::GetExitCodeProcess(owned.get(), &code));
    return code;
}

}  // namespace

TEST_CASE("a function that has written past its array on the stack ends the program") {
    const std::wstring program = L'"' + win32::modulePath(nullptr) + L'"';
    const DWORD stackBufferOverrun = 0xC0000409;
    CHECK(exitCodeOf(program + L" --write-on-stack=16") == 16);
    CHECK(exitCodeOf(program + L" --write-on-stack=17") == stackBufferOverrun);
    CHECK(exitCodeOf(program + L" --write-on-stack=200") == stackBufferOverrun);
}

TEST_CASE("the number on the stack is not the one in the file") {
    CHECK(__stack_chk_guard != 0x0A0DFF00);
}
