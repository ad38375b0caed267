#include <optional>

#include "app/FMain.h"
#include "app/component_check.h"
#include "build_settings.h"
#include "helmkit/client/logger.h"
#include "resources/resource_ids.h"
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

}  // namespace

bool FMain::Form_Initialize() {
    const std::wstring here = source(L".Form_Initialize");
    auto writeLine = [&](const std::wstring& text, LONG level) { logger_.WriteLog(0, text, level, here); };
    ContinueOnError step;
    step([&] { logger_ = helmkit::Logger::create(); });
    step([&] { logger_.OpenLogs(programFolder() + L"\\QLN.log", programFolder() + L"\\short.log"); });
    step([&] { writeLine(L"********** start app", helmkit::information); });
    step([&] { writeLine(versionLine(), helmkit::information); });
    step([&] { writeLine(windowsStartLine(), helmkit::information); });
    // The plug-in runs before its presence is checked, on purpose: it may take over the logger that the
    // check's message is written to.
    step([&] { callPlugIn(); });
    std::wstring message;
    if (!ComponentCheck(message)) {
        tellMissingComponent(message);
        step([&] { writeLine(message, helmkit::caughtError); });
        return false;
    }
    step([&] { win32::setText(handle(), win32::loadString(STRING_PRODUCT)); });
    if (step.last()) {
        const win32::Error error = *step.last();
        step([&] { logger_.WriteLog(error.number, error.description, helmkit::startUpError, here); });
    }
    return true;
}

void FMain::callPlugIn() {
    CLSID clsid;
    win32::check(::CLSIDFromProgID(L"QLNCustom.CCustom2", &clsid));
    auto plugIn = win32::create<IDispatch>(clsid, IID_IDispatch);
    win32::ComPtr<IDispatch> logger(logger_.object());
    IDispatch* argument = logger.release();
    VARIANT byReference = {};
    byReference.vt = VT_BYREF | VT_DISPATCH;
    byReference.ppdispVal = &argument;
    struct TakeBack {
        helmkit::Logger& logger;
        IDispatch*& argument;
        ~TakeBack() { logger = helmkit::Logger(win32::ComPtr<IDispatch>::adopt(argument)); }
    } takeBack{logger_, argument};
    win32::invoke(plugIn.get(), L"Init", &byReference, 1);
}

void FMain::Form_Load() {
    trapped(L".Form_Load", [&] {
        BackupRegistry();
        InitTabStrip();
        LogTabState();
    });
}

void FMain::InitTabStrip() {
    trapped(L".InitTabStrip", [&] {
        const int pageTop = 435, pageLeft = 285;
        pages_.clear();
        auto add = [&](const wchar_t* key, win32::Window& page) {
            pages_.push_back({key, &page, {page.handle(), pageLeft, pageTop, 0, 0}});
        };
        add(L"help", *ucHelp1_);
        const wchar_t* const startupKeys[] = {L"Run", L"Winlogon", L"Other", L"Services"};
        for (size_t i = 0; i < startupPages_.size(); ++i) add(startupKeys[i], *startupPages_[i]);
        Form_Resize();
        ucHelp1_->Init(logger_);
        for (auto& page : startupPages_) page->Init(logger_);
        currentPage_ = 1;
        ShowCurrentPage();
    });
}

}  // namespace app
