// The unit tests' entry: --flavour=ansi or --flavour=wide chooses the string flavour, the rest is doctest's.
// As on Windows 98, the ANSI flavour goes without the functions of newer Windows that are looked up.
// --write-on-stack=N writes N bytes into an array of 16 and tells N, --write-on-heap=N into one of 20: a
// process that is started to be ended.
#define DOCTEST_CONFIG_IMPLEMENT
#include <doctest/doctest.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "tests/support/looked_up.h"
#include "win32/base/flavour.h"
#include "win32/com/com.h"

namespace {

[[gnu::noinline]] int writtenOnStack(int count) {
    char array[16];
    volatile char* target = array;
    for (int i = 0; i < count; ++i) target[i] = 'x';
    return count;
}

[[gnu::noinline]] int writtenOnHeap(int count) {
    std::vector<char> array(20);
    volatile char* target = array.data();
    for (int i = 0; i < count; ++i) target[i] = 'x';
    return count;
}

// The number behind an argument of that beginning, none for another argument.
const char* numberBehind(const char* beginning, const char* argument) {
    const size_t length = std::strlen(beginning);
    return std::strncmp(argument, beginning, length) ? nullptr : argument + length;
}

}  // namespace

int main(int count, char** arguments) {
    for (int i = 1; i < count; ++i) {
        if (!std::strcmp(arguments[i], "--flavour=ansi")) {
            win32::forceFlavour(win32::Flavour::ansi);
            looked_up::findAsWindows98();
        }
        if (!std::strcmp(arguments[i], "--flavour=wide")) win32::forceFlavour(win32::Flavour::wide);
    }
    if (count >= 2) {
        if (auto* number = numberBehind("--write-on-stack=", arguments[1]))
            return writtenOnStack(std::atoi(number));
        if (auto* number = numberBehind("--write-on-heap=", arguments[1]))
            return writtenOnHeap(std::atoi(number));
    }
    win32::ComApartment apartment;
    doctest::Context context(count, arguments);
    return context.run();
}
