// The errors that an enumeration logs, kept for the report instead.
#pragma once

#include <string>
#include <vector>

#include "helmkit/client/logger.h"

namespace report {

struct Failure {
    std::wstring source;  // as in "ucRun.EnumItems"
    std::wstring text;
};

class FailureLog {
  public:
    FailureLog();
    ~FailureLog();
    FailureLog(const FailureLog&) = delete;
    FailureLog& operator=(const FailureLog&) = delete;

    const helmkit::Logger& logger() const { return logger_; }
    // What was logged since the last call.
    std::vector<Failure> taken();

  private:
    class Recorder;
    win32::ComPtr<Recorder> recorder_;
    helmkit::Logger logger_;
};

}  // namespace report
