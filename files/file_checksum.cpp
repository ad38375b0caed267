#include "files/file_checksum.h"

#include "files/checksum.h"
#include "helmkit/client/file_services.h"
#include "helmkit/client/shared_services.h"
#include "helmkit/client/system_services.h"

namespace files {

int32_t FileChecksum(const std::wstring& fileName, int32_t& size) {
    size = 0;
    try {
        auto bytes = helmkit::fileServices().ReadFileBytes(fileName);
        if (helmkit::systemServices().IsEmptyBytes(bytes)) return 0;
        size = static_cast<int32_t>(bytes.array->rgsabound[0].cElements);
        return checksum(static_cast<const uint8_t*>(bytes.array->pvData), static_cast<size_t>(size));
    } catch (...) {
        // The checksum serves a log line; a file that cannot be read is told by its size 0.
        return 0;
    }
}

}  // namespace files
