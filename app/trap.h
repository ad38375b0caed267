// The error trap of the main window's procedures.
#pragma once

#include <string>

#include "helmkit/client/logger.h"
#include "helmkit/client/trap.h"

namespace app {

// The source of a log line, as in "FMain.Form_Load".
inline std::wstring source(const wchar_t* procedure) {
    return std::wstring(L"FMain") + procedure;
}

template <class Body>
void trapped(const helmkit::Logger& logger, const wchar_t* procedure, Body&& body) {
    helmkit::trapped(logger, source(procedure), body);
}

}  // namespace app
