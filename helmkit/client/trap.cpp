#include "helmkit/client/trap.h"

namespace helmkit {

void logCaught(const Logger& logger, const std::wstring& source) noexcept {
    const win32::Error error = win32::currentError();
    logger.WriteLog(error.number, error.description, caughtError, source);
}

}  // namespace helmkit
