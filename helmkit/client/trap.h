// The trap that every handler and private procedure ends in: one log line with number, description, level and
// source, and then the procedure is left and its caller goes on.
#pragma once

#include <string>

#include "helmkit/client/logger.h"

namespace helmkit {

// Logs the exception being handled. A logger that fails here has nobody left to tell.
void logCaught(const Logger& logger, const std::wstring& source) noexcept;

// Runs `body`. `source` is the type's name, a point and the procedure's name.
template <class Body>
void trapped(const Logger& logger, const std::wstring& source, Body&& body) noexcept {
    try {
        body();
    } catch (...) {
        logCaught(logger, source);
    }
}

}  // namespace helmkit
