#include "helmkit/client/logger.h"

#include "win32/com/in_string.h"

namespace helmkit {

using win32::check;
using win32::ComPtr;
using win32::InString;
using win32::Variant;

Logger Logger::create() {
    return Logger(ComPtr<IDispatch>(win32::create<ILogWriter>(CLSID_LogWriter, IID_ILogWriter).get()));
}

void Logger::OpenLogs(const std::wstring& fullLog, const std::wstring& shortLog) const {
    auto writer = object_.as<ILogWriter>(IID_ILogWriter);
    if (!writer) win32::raise(E_NOINTERFACE, L"The logger opens no logs");
    check(writer->OpenLogs(InString(fullLog).get(), InString(shortLog).get()));
}

void Logger::WriteLog(LONG code, const std::wstring& text, LONG level,
                      const std::wstring& source) const noexcept {
    try {
        if (object_) write(code, text, level, source);
    } catch (...) {
        // No procedure ends by its logger.
    }
}

void Logger::write(LONG code, const std::wstring& text, LONG level, const std::wstring& source) const {
    if (auto writer = object_.as<ILogWriter>(IID_ILogWriter)) {
        check(writer->WriteLog(code, InString(text).get(), level, InString(source).get()));
        return;
    }
    Variant arguments[] = {Variant(code), Variant(text), Variant(level), Variant(source)};
    win32::invoke(object_.get(), L"WriteLog", arguments, 4);
}

}  // namespace helmkit
