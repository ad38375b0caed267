#include "win32/base/flavour.h"

namespace win32 {

namespace {

// GetVersion sets its top bit on Windows 95, 98 and Me, with or without a manifest. The real function is
// asked, not the scripted desktop: what the wide functions do does not depend on what a test pretends.
Flavour flavourOfThisWindows() {
    return (::GetVersion() & 0x80000000) ? Flavour::ansi : Flavour::wide;
}

Flavour& chosen() {
    static Flavour choice = flavourOfThisWindows();
    return choice;
}

}  // namespace

Flavour flavour() {
    return chosen();
}

void forceFlavour(Flavour flavour) {
    chosen() = flavour;
}

}  // namespace win32
