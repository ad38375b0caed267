// What the compiler's runtime would import, and the program must not: it is defined inside.
#include <doctest/doctest.h>

#include "tests/support/replaced_import.h"

#ifndef _WIN64

TEST_CASE("what Windows 98 has not got, or only pretends to have, is not imported for the runtime") {
    CHECK(ReplacedImport::placeOf("CreateFileA"));
    for (const char* name : {"CreateSemaphoreW", "GetThreadId", "TryEnterCriticalSection"}) {
        CAPTURE(name);
        CHECK_FALSE(ReplacedImport::placeOf(name));
    }
}

#endif
