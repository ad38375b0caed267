#pragma once

#include <optional>
#include <string>

#include "helmkit.h"
#include "win32/com/com_server.h"
#include "win32/files/files.h"

namespace helmkit::server {

// ILogWriter: the full log gets every line, the short one those of the levels 0 to 4.
//
// Lines are appended, each in one write of its own. A log that has grown over its limit is cut to its newest
// lines when it is opened, never during a run; where that cannot be done it goes on growing. A line that
// cannot be written to one log is still written to the other, then the failure is raised.
class LogWriter : public win32::AutomationObject<ILogWriter, &IID_ILogWriter> {
  public:
    STDMETHODIMP OpenLogs(BSTR fullLogPath, BSTR shortLogPath) override;
    STDMETHODIMP WriteLog(LONG code, BSTR text, LONG level, BSTR source) override;

  private:
    // The present time as lines tell it. Windows' clock moves with its ticks, so it is asked once for each.
    const std::string& now();

    win32::AppendFile full_, short_;
    std::string time_;
    std::optional<DWORD> tick_;  // of that time
};

}  // namespace helmkit::server
