// The unit tests' entry: --flavour=ansi or --flavour=wide chooses the string flavour, the rest is doctest's.
// --write-on-stack=N writes N bytes into an array of 16 and tells N: a process that is started to be ended.
#define DOCTEST_CONFIG_IMPLEMENT
#include <doctest/doctest.h>

#include <cstdlib>
#include <cstring>

#include "win32/base/flavour.h"
#include "win32/com/com.h"

namespace {

[[gnu::noinline]] int writtenOnStack(int count) {
    char array[16];
    volatile char* target = array;
    for (int i = 0; i < count; ++i) target[i] = 'x';
    return count;
}

}  // namespace

int main(int count, char** arguments) {
    for (int i = 1; i < count; ++i) {
        if (!std::strcmp(arguments[i], "--flavour=ansi")) win32::forceFlavour(win32::Flavour::ansi);
        if (!std::strcmp(arguments[i], "--flavour=wide")) win32::forceFlavour(win32::Flavour::wide);
    }
    const char* const writing = "--write-on-stack=";
    if (count == 2 && !std::strncmp(arguments[1], writing, std::strlen(writing)))
        return writtenOnStack(std::atoi(arguments[1] + std::strlen(writing)));
    win32::ComApartment apartment;
    doctest::Context context(count, arguments);
    return context.run();
}
