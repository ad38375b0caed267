// The activity logger as its callers see it.
#pragma once

#include <string>

#include "helmkit.h"
#include "win32/com/com.h"

namespace helmkit {

// Log levels.
constexpr LONG startUpError = 0;
constexpr LONG caughtError = 4;
constexpr LONG information = 5;

// A reference to a logger: the library's own, or any object with a WriteLog that a plug-in put in its place.
class Logger {
  public:
    Logger() = default;
    explicit Logger(win32::ComPtr<IDispatch> object) : object_(std::move(object)) {}

    // The library's own, with no logs open yet.
    static Logger create();
    // Only for the library's own logger. When it throws, every later line is dropped.
    void OpenLogs(const std::wstring& fullLog, const std::wstring& shortLog) const;

    // Raises nothing: without a logger, or where it refuses, the line is lost and the caller goes on.
    void WriteLog(LONG code, const std::wstring& text, LONG level, const std::wstring& source) const noexcept;

    IDispatch* object() const { return object_.get(); }

  private:
    void write(LONG code, const std::wstring& text, LONG level, const std::wstring& source) const;

    win32::ComPtr<IDispatch> object_;
};

}  // namespace helmkit
