#include "helmkit/client/trap.h"

namespace helmkit {

void logCaught(const Logger& logger, const std::wstring& source) noexcept {
    win32::Error error = win32::currentError();
    try {
        logger.WriteLog(error.number, error.description, caughtError, source);
    } catch (...) {
    }
}

}  // namespace helmkit
