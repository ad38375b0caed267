#include "win32/system/universal_time.h"

namespace win32 {

FILETIME universalTime(const SYSTEMTIME& localMoment) {
    FILETIME local = {}, universal = {};
    if (!::SystemTimeToFileTime(&localMoment, &local) || !::LocalFileTimeToFileTime(&local, &universal))
        return {};
    return universal;
}

}  // namespace win32
