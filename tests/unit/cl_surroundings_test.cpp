// What a support request finds in Windows: the request object and the clock.
#include <string>
#include <vector>

#include <doctest/doctest.h>

#include "support/cl.h"
#include "tests/support/replaced_import.h"
#include "tests/support/text.h"

namespace {

std::vector<std::wstring> asked;
size_t missing = 0;  // so many names, from the first on, that this Windows does not know

HRESULT(WINAPI* realClassOf)(const wchar_t*, CLSID*);
HRESULT WINAPI classOf(const wchar_t* name, CLSID* clsid) {
    asked.push_back(name);
    return asked.size() <= missing ? CO_E_CLASSSTRING : realClassOf(name, clsid);
}

DWORD slept = 0;
void WINAPI sleep(DWORD milliseconds) {
    slept += milliseconds;
}

}  // namespace

TEST_CASE("the request object is asked for by its newer name, then by its older one") {
    const ReplacedImport names("CLSIDFromProgID", &classOf, realClassOf);
    const std::vector<std::wstring> known = {L"Msxml2.XMLHTTP", L"Microsoft.XMLHTTP"};
    for (missing = 0; missing <= 2; ++missing) {
        CAPTURE(missing);
        asked.clear();
        const bool isMade = static_cast<bool>(support::realSurroundings().newRequest());
        CHECK(isMade == (missing < 2));
        CHECK(asked == std::vector<std::wstring>(known.begin(), known.begin() + (missing ? 2 : 1)));
    }
}

TEST_CASE("a request sleeps as long as it is told to") {
    const ReplacedImport clock("Sleep", &sleep);
    support::realSurroundings().sleep(17);
    CHECK(slept == 17);
}
