#include "app/start_up.h"

#include <optional>

#include "app/component_check.h"
#include "app/trap.h"
#include "build_settings.h"
#include "resources/resource_ids.h"
#include "win32/com/automation.h"
#include "win32/system/date_time.h"
#include "win32/system/desktop.h"
#include "win32/system/resources.h"

namespace app {

namespace {

// Runs steps on past errors and keeps the last one.
class ContinueOnError {
  public:
    template <class Step>
    void operator()(Step&& step) {
        try {
            step();
        } catch (...) {
            last_ = win32::currentError();
        }
    }
    const std::optional<win32::Error>& last() const { return last_; }

  private:
    std::optional<win32::Error> last_;
};

std::wstring versionLine() {
    return win32::loadString(STRING_PRODUCT) + L" ver." + settings::versionMajor + L"." +
           settings::versionMinor + L"." + settings::versionRevision;
}

std::wstring windowsStartLine() {
    auto& desktop = win32::desktop();
    return L"Startup: " +
           win32::shortDateLongTime(win32::secondsBefore(desktop.localTime(), desktop.tickCount() / 1000));
}

// Neither the formatting service nor a logger may be needed to tell that they are missing.
void tellMissingComponent(const std::wstring& message) {
    const std::wstring advice = registrationAdvice();
    win32::desktop().messageBox(nullptr, advice.empty() ? message : message + L"\n\n" + advice,
                                win32::loadString(STRING_PRODUCT), MB_ICONERROR);
}

// The logger is what the plug-in leaves in the argument, also when its call fails.
void callPlugIn(helmkit::Logger& logger) {
    CLSID clsid;
    win32::check(::CLSIDFromProgID(L"QLNCustom.CCustom2", &clsid));
    auto plugIn = win32::create<IDispatch>(clsid, IID_IDispatch);
    win32::DispatchByReference argument(logger.object());
    try {
        VARIANT byReference = argument.variant();
        win32::invoke(plugIn.get(), L"Init", &byReference, 1);
    } catch (...) {
        logger = helmkit::Logger(argument.take());
        throw;
    }
    logger = helmkit::Logger(argument.take());
}

}  // namespace

bool initialize(helmkit::Logger& logger, const std::wstring& folder,
                const std::function<void(const std::wstring& title)>& setTitle) {
    const std::wstring here = source(L".Form_Initialize");
    auto writeLine = [&](const std::wstring& text, LONG level) { logger.WriteLog(0, text, level, here); };
    ContinueOnError step;
    step([&] { logger = helmkit::Logger::create(); });
    step([&] { logger.OpenLogs(folder + L"\\QLN.log", folder + L"\\short.log"); });
    step([&] { writeLine(L"********** start app", helmkit::information); });
    step([&] { writeLine(versionLine(), helmkit::information); });
    step([&] { writeLine(windowsStartLine(), helmkit::information); });
    // The plug-in runs before its presence is checked, on purpose: it may take over the logger that the
    // check's message is written to.
    step([&] { callPlugIn(logger); });
    std::wstring message;
    if (!ComponentCheck(message)) {
        tellMissingComponent(message);
        step([&] { writeLine(message, helmkit::caughtError); });
        return false;
    }
    step([&] { setTitle(win32::loadString(STRING_PRODUCT)); });
    if (step.last()) {
        const win32::Error error = *step.last();
        step([&] { logger.WriteLog(error.number, error.description, helmkit::startUpError, here); });
    }
    return true;
}

}  // namespace app
