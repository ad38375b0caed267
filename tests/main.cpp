// The unit tests' entry: --flavour=ansi or --flavour=wide chooses the string flavour, the rest is doctest's.
#define DOCTEST_CONFIG_IMPLEMENT
#include <doctest/doctest.h>

#include <cstring>

#include "win32/base/flavour.h"
#include "win32/com/com.h"

int main(int count, char** arguments) {
    for (int i = 1; i < count; ++i) {
        if (!std::strcmp(arguments[i], "--flavour=ansi")) win32::forceFlavour(win32::Flavour::ansi);
        if (!std::strcmp(arguments[i], "--flavour=wide")) win32::forceFlavour(win32::Flavour::wide);
    }
    win32::ComApartment apartment;
    doctest::Context context(count, arguments);
    return context.run();
}
