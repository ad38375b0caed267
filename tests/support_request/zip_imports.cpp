// Links the zip writer and the support request into a program, for a look at what it would import. Run, it
// says how many arguments it got: what it links must not be optimised away.
#include "helmkit/client/logger.h"
#include "support/cZip.h"
#include "support/cl.h"

int main(int count, char**) {
    support::cZip zip;
    support::cl request;
    std::wstring reason;
    if (count < 2) return 0;
    zip.Zip();
    zip.Delete();
    return request.Do1(helmkit::Logger(), L"category", nullptr, reason);
}
